// The allocations that a program makes, in the system's place. Those of operator new are among
// them.
#include "tests/faults/FaultPlan.h"

#include <cerrno>
#include <cstdlib>

using FaultPlan::failed;
using FaultPlan::failsToAllocate;

#pragma GCC visibility push(default)
extern "C" {

// The system's own, which can be called before anything can be looked up.
void *systemMalloc(size_t size) __asm__("__libc_malloc");
void *systemCalloc(size_t count, size_t size) __asm__("__libc_calloc");
void *systemRealloc(void *block, size_t size) __asm__("__libc_realloc");
void *systemMemalign(size_t alignment, size_t size) __asm__("__libc_memalign");

void *malloc(size_t size)
{
    return failsToAllocate(size) ? failed<void *>(nullptr) : systemMalloc(size);
}

void *calloc(size_t count, size_t size)
{
    return failsToAllocate(count * size) ? failed<void *>(nullptr) : systemCalloc(count, size);
}

void *realloc(void *block, size_t size)
{
    return size > 0 && failsToAllocate(size) ? failed<void *>(nullptr) : systemRealloc(block, size);
}

void *aligned_alloc(size_t alignment, size_t size)
{
    return failsToAllocate(size) ? failed<void *>(nullptr) : systemMemalign(alignment, size);
}

int posix_memalign(void **block, size_t alignment, size_t size)
{
    void *got = failsToAllocate(size) ? nullptr : systemMemalign(alignment, size);
    if (!got)
        return ENOMEM;
    *block = got;
    return 0;
}

} // extern "C"
#pragma GCC visibility pop
