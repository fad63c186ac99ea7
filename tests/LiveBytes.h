#pragma once

#include "ResourceLimits.h"

#include <QtGlobal>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <malloc.h>

/// Counts the bytes asked of the allocator and not yet given back, of all threads: what callers ask
/// for, without what the allocator adds to a block or keeps for later. A block that is resized
/// counts twice meanwhile, as it may have to move. In one source file of a program only, whose
/// allocation functions these become; the sanitizers' have hooks instead.
namespace LiveBytes {

inline std::atomic<std::ptrdiff_t> live{0};
inline std::atomic<std::ptrdiff_t> peak{0};

inline void add(std::size_t size)
{
    const std::ptrdiff_t now = live += static_cast<std::ptrdiff_t>(size);
    std::ptrdiff_t highest = peak;
    while (now > highest && !peak.compare_exchange_weak(highest, now)) {
    }
}

inline void subtract(std::size_t size)
{
    live -= static_cast<std::ptrdiff_t>(size);
}

/// From its construction on.
class Count
{
public:
    Count()
        : before(live)
    {
        peak = before;
    }

    /// The most there were at a time, beyond those at the beginning.
    qint64 highest() const { return peak - before; }
    /// Those that there are now, beyond those at the beginning.
    qint64 kept() const { return live - before; }

private:
    const std::ptrdiff_t before;
};

} // namespace LiveBytes

#if DOCDISPLAY_SANITIZED

extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void *, std::size_t),
                                              void (*freed)(const volatile void *));
std::size_t __sanitizer_get_allocated_size(const volatile void *block);
}

namespace LiveBytes {

inline const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void * /*block*/, std::size_t size) { add(size); },
    [](const volatile void *block) {
        if (block)
            subtract(__sanitizer_get_allocated_size(block));
    });

} // namespace LiveBytes

#else

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace LiveBytes {

// The size asked for is kept at the very end of the block, which is made longer by it: so the block
// begins where the allocator has put it, whatever its alignment.
inline char *sizeOf(void *block)
{
    return static_cast<char *>(block) + malloc_usable_size(block) - sizeof(std::size_t);
}

inline std::size_t longer(std::size_t size)
{
    const std::size_t sum = size + sizeof(std::size_t);
    return sum < size ? size : sum; // one that is too large stays so
}

inline void *counted(void *block, std::size_t size)
{
    if (block) {
        std::memcpy(sizeOf(block), &size, sizeof size);
        add(size);
    }
    return block;
}

inline std::size_t askedFor(void *block)
{
    std::size_t size = 0;
    if (block)
        std::memcpy(&size, sizeOf(block), sizeof size);
    return size;
}

} // namespace LiveBytes

extern "C" {
Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    return LiveBytes::counted(__libc_malloc(LiveBytes::longer(size)), size);
}
Q_DECL_EXPORT void *calloc(std::size_t count, std::size_t size) noexcept
{
    std::size_t bytes = 0;
    if (__builtin_mul_overflow(count, size, &bytes))
        return nullptr;
    return LiveBytes::counted(__libc_calloc(1, LiveBytes::longer(bytes)), bytes);
}
Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    const std::size_t before = LiveBytes::askedFor(block);
    void *moved = LiveBytes::counted(__libc_realloc(block, LiveBytes::longer(size)), size);
    if (moved)
        LiveBytes::subtract(before);
    return moved;
}
Q_DECL_EXPORT void *memalign(std::size_t alignment, std::size_t size) noexcept
{
    return LiveBytes::counted(__libc_memalign(alignment, LiveBytes::longer(size)), size);
}
Q_DECL_EXPORT void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return memalign(alignment, size);
}
Q_DECL_EXPORT int posix_memalign(void **block, std::size_t alignment, std::size_t size) noexcept
{
    *block = memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}
Q_DECL_EXPORT void free(void *block) noexcept
{
    LiveBytes::subtract(LiveBytes::askedFor(block));
    __libc_free(block);
}
}

#endif
