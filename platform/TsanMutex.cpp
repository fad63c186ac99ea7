// Qt is not built for ThreadSanitizer, which therefore does not see what its mutexes guard. Here
// are their two operations again, which tell it and then call Qt's. They take the place of Qt's for
// the whole process: this file is part of builds for ThreadSanitizer only.
#include <QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

using Operation = void (*)(QMutex *);

Operation ofQt(const char *name)
{
    return reinterpret_cast<Operation>(::dlsym(RTLD_NEXT, name));
}

} // namespace

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const Operation lockOfQt = ofQt("_ZN6QMutex4lockEv");
    lockOfQt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const Operation unlockOfQt = ofQt("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockOfQt(this);
}
