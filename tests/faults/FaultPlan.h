#pragma once

#include <cerrno>
#include <cstddef>

#include <fcntl.h>

/// What a library that is preloaded into a program makes fail there: the n-th of its calls of one
/// kind, counted from the start of main() to its end. A child that it forks neither counts nor
/// fails: which of its calls would be the n-th is not its parent's. The environment tells it;
/// without FAULT_KIND nothing is counted and nothing fails.
///
///   FAULT_KIND       open, read, write, rename (or link), unlink (or rmdir), mkdir, close, memory
///   FAULT_AT         the number of the call that fails, from 1; none without it
///   FAULT_AND_AFTER  when set, all calls behind that one fail as well
///   FAULT_SHORT      when set, a read or write is cut to half its bytes instead
///   FAULT_KILL       when set, the program is killed before that call, as by "kill -9"
///   FAULT_ERRNO      the error, as a number; without it EIO, or ENOMEM for memory
///   FAULT_BELOW      an absolute path: other files than it and those below it do not count, nor do
///                    allocations before the first call for one of these
///   FAULT_LEAST      allocations of fewer bytes do not count
///   FAULT_REPORT     a file that is given the number of calls when main() has returned
namespace FaultPlan {

enum class Kind { None, Open, Read, Write, Rename, Unlink, Mkdir, Close, Memory };

/// Whether this call, for a path or a descriptor, is to fail. It is counted by that.
bool fails(Kind kind, const char *path, int folder = AT_FDCWD);
bool fails(Kind kind, int file);

/// The same for an allocation.
bool failsToAllocate(size_t size);

/// Whether it is to do half of its work instead of failing.
bool isShort();

/// The error that a call fails with.
int error();

/// Sets errno to it and returns `result`.
template <typename Result>
Result failed(Result result)
{
    errno = error();
    return result;
}

} // namespace FaultPlan
