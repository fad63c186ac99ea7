#pragma once

#include "ResourceLimits.h"

#include <QtGlobal>

#include <atomic>
#include <cstddef>

/// The largest block of memory asked for since it was set to 0; stays 0 under a sanitizer. In one
/// source file of a program only, whose allocation functions these become.
inline std::atomic<std::size_t> largestBlock{0};

#if !DOCDISPLAY_SANITIZED

inline void noteBlock(std::size_t size)
{
    std::size_t largest = largestBlock;
    while (size > largest && !largestBlock.compare_exchange_weak(largest, size)) {
    }
}

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_realloc(void *block, std::size_t size);

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    noteBlock(size);
    return __libc_malloc(size);
}
Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    noteBlock(size);
    return __libc_realloc(block, size);
}
}

#endif
