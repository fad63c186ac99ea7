#include "fuzz/OnlyFile.h"

#include "fuzz/Fuzz.h"

#include <QFile>

#include <cerrno>
#include <cstdarg>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

const QByteArray *onlyName = nullptr; // while an OnlyFile lives

int openByName(const char *name, int flags, mode_t mode)
{
    if (onlyName && *onlyName != name && qstrcmp(name, "/dev/null") != 0) {
        errno = EACCES;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, name, flags, mode));
}

} // namespace

// The program's own definitions take the place of the C library's, also for Qt. A sanitizer's and
// the fuzzer's own files are opened by other ways.
// NOLINTNEXTLINE(cert-dcl50-cpp): the C library's function is variadic
extern "C" Q_DECL_EXPORT int open64(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return openByName(name, flags, mode);
}

OnlyFile::OnlyFile(const QString &path)
    : name(QFile::encodeName(path))
{
    require(!onlyName);
    onlyName = &name;
}

OnlyFile::~OnlyFile()
{
    onlyName = nullptr;
}
