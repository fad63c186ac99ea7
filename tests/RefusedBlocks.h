#pragma once

#include "ResourceLimits.h"

#include <QtGlobal>

#include <atomic>
#include <climits>
#include <cstddef>

/// Refuses memory: of the large blocks for which malloc() is asked, all from the n-th on. Under a
/// sanitizer none is refused. In one source file of a program only, whose malloc() it becomes.
namespace RefusedBlocks {

inline std::atomic<int> left{INT_MAX}; // until one is refused
inline std::atomic<std::size_t> large{65536};

/// Until the end of the scope.
class From
{
public:
    From(int n, std::size_t size)
    {
        large = size;
        left = n;
    }
    ~From() { left = INT_MAX; }
    Q_DISABLE_COPY_MOVE(From)

    bool haveBeen() const { return left < 0; }
};

} // namespace RefusedBlocks

#if !DOCDISPLAY_SANITIZED

extern "C" {
void *__libc_malloc(std::size_t size);

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    if (size >= RefusedBlocks::large && --RefusedBlocks::left < 0)
        return nullptr;
    return __libc_malloc(size);
}
}

#endif
