#pragma once

#include <cxxabi.h>

/// Whether `work` returns true: an exception is a failure like any other. But for the one by which
/// a thread is terminated, which must go on.
template <typename Work>
bool succeeds(const Work &work)
{
    try {
        return work();
    } catch (const abi::__forced_unwind &) {
        throw;
    } catch (...) {
        return false;
    }
}
