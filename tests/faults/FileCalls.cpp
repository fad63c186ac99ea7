// The calls by which a program comes to its files, in the system's place.
#include "tests/faults/FaultPlan.h"

#include <cstdarg>
#include <cstdio>

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

using FaultPlan::failed;
using FaultPlan::fails;
using FaultPlan::Kind;

namespace {

// The function that this library's one of the same type stands in front of.
template <typename Function>
Function *behind(Function * /*front*/, const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

// The mode is given when a file may be made.
mode_t modeOf(int flags, va_list &more)
{
    const bool makesFile = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return makesFile ? va_arg(more, mode_t) : 0;
}

// A read or write of up to `size` bytes, which `work` does.
template <typename Work>
ssize_t transfer(Kind kind, int file, size_t size, const Work &work)
{
    if (!fails(kind, file))
        return work(size);
    return FaultPlan::isShort() && size > 1 ? work(size / 2) : failed<ssize_t>(-1);
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

int open(const char *path, int flags, ...)
{
    static const auto next = behind(&::open, "open");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return fails(Kind::Open, path) ? failed(-1) : next(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    static const auto next = behind(&::open64, "open64");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return fails(Kind::Open, path) ? failed(-1) : next(path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    static const auto next = behind(&::openat, "openat");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return fails(Kind::Open, path, folder) ? failed(-1) : next(folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    static const auto next = behind(&::openat64, "openat64");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return fails(Kind::Open, path, folder) ? failed(-1) : next(folder, path, flags, mode);
}

int creat(const char *path, mode_t mode)
{
    static const auto next = behind(&::creat, "creat");
    return fails(Kind::Open, path) ? failed(-1) : next(path, mode);
}

int creat64(const char *path, mode_t mode)
{
    static const auto next = behind(&::creat64, "creat64");
    return fails(Kind::Open, path) ? failed(-1) : next(path, mode);
}

FILE *fopen(const char *path, const char *mode)
{
    static const auto next = behind(&::fopen, "fopen");
    return fails(Kind::Open, path) ? failed<FILE *>(nullptr) : next(path, mode);
}

FILE *fopen64(const char *path, const char *mode)
{
    static const auto next = behind(&::fopen64, "fopen64");
    return fails(Kind::Open, path) ? failed<FILE *>(nullptr) : next(path, mode);
}

DIR *opendir(const char *path)
{
    static const auto next = behind(&::opendir, "opendir");
    return fails(Kind::Open, path) ? failed<DIR *>(nullptr) : next(path);
}

ssize_t read(int file, void *bytes, size_t size)
{
    static const auto next = behind(&::read, "read");
    return transfer(Kind::Read, file, size, [&](size_t part) { return next(file, bytes, part); });
}

ssize_t write(int file, const void *bytes, size_t size)
{
    static const auto next = behind(&::write, "write");
    return transfer(Kind::Write, file, size, [&](size_t part) { return next(file, bytes, part); });
}

ssize_t pread(int file, void *bytes, size_t size, off_t at)
{
    static const auto next = behind(&::pread, "pread");
    return transfer(Kind::Read, file, size,
                    [&](size_t part) { return next(file, bytes, part, at); });
}

ssize_t pread64(int file, void *bytes, size_t size, off64_t at)
{
    static const auto next = behind(&::pread64, "pread64");
    return transfer(Kind::Read, file, size,
                    [&](size_t part) { return next(file, bytes, part, at); });
}

ssize_t pwrite(int file, const void *bytes, size_t size, off_t at)
{
    static const auto next = behind(&::pwrite, "pwrite");
    return transfer(Kind::Write, file, size,
                    [&](size_t part) { return next(file, bytes, part, at); });
}

ssize_t pwrite64(int file, const void *bytes, size_t size, off64_t at)
{
    static const auto next = behind(&::pwrite64, "pwrite64");
    return transfer(Kind::Write, file, size,
                    [&](size_t part) { return next(file, bytes, part, at); });
}

ssize_t readv(int file, const iovec *parts, int count)
{
    static const auto next = behind(&::readv, "readv");
    return fails(Kind::Read, file) ? failed<ssize_t>(-1) : next(file, parts, count);
}

ssize_t writev(int file, const iovec *parts, int count)
{
    static const auto next = behind(&::writev, "writev");
    return fails(Kind::Write, file) ? failed<ssize_t>(-1) : next(file, parts, count);
}

int rename(const char *from, const char *to) noexcept
{
    static const auto next = behind(&::rename, "rename");
    return fails(Kind::Rename, to) ? failed(-1) : next(from, to);
}

int link(const char *from, const char *to) noexcept
{
    static const auto next = behind(&::link, "link");
    return fails(Kind::Rename, to) ? failed(-1) : next(from, to);
}

int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept
{
    static const auto next = behind(&::renameat, "renameat");
    return fails(Kind::Rename, to, toFolder) ? failed(-1) : next(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
              unsigned int flags) noexcept
{
    static const auto next = behind(&::renameat2, "renameat2");
    return fails(Kind::Rename, to, toFolder) ? failed(-1)
                                             : next(fromFolder, from, toFolder, to, flags);
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    static const auto next = behind(&::linkat, "linkat");
    return fails(Kind::Rename, to, toFolder) ? failed(-1)
                                             : next(fromFolder, from, toFolder, to, flags);
}

int unlink(const char *path) noexcept
{
    static const auto next = behind(&::unlink, "unlink");
    return fails(Kind::Unlink, path) ? failed(-1) : next(path);
}

int remove(const char *path) noexcept
{
    static const auto next = behind(&::remove, "remove");
    return fails(Kind::Unlink, path) ? failed(-1) : next(path);
}

int rmdir(const char *path) noexcept
{
    static const auto next = behind(&::rmdir, "rmdir");
    return fails(Kind::Unlink, path) ? failed(-1) : next(path);
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    static const auto next = behind(&::unlinkat, "unlinkat");
    return fails(Kind::Unlink, path, folder) ? failed(-1) : next(folder, path, flags);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    static const auto next = behind(&::mkdir, "mkdir");
    return fails(Kind::Mkdir, path) ? failed(-1) : next(path, mode);
}

int mkdirat(int folder, const char *path, mode_t mode) noexcept
{
    static const auto next = behind(&::mkdirat, "mkdirat");
    return fails(Kind::Mkdir, path, folder) ? failed(-1) : next(folder, path, mode);
}

// The descriptor is closed all the same, as the system does it.
int close(int file)
{
    static const auto next = behind(&::close, "close");
    const bool isFault = fails(Kind::Close, file);
    const int result = next(file);
    return isFault ? failed(-1) : result;
}

} // extern "C"
#pragma GCC visibility pop
