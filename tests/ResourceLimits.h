#pragma once

#include "Emulator.h"

#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

/// Whether a sanitizer is built in that allocates itself and reserves address space of its own.
#if defined(__has_feature)
#define DOCDISPLAY_HAS_FEATURE(feature) __has_feature(feature)
#else
#define DOCDISPLAY_HAS_FEATURE(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || \
    DOCDISPLAY_HAS_FEATURE(address_sanitizer) || DOCDISPLAY_HAS_FEATURE(thread_sanitizer)
#define DOCDISPLAY_SANITIZED 1
#else
#define DOCDISPLAY_SANITIZED 0
#endif
constexpr bool kSanitized = DOCDISPLAY_SANITIZED;

/// Whether RLIMIT_AS is the program's own: the sanitizers reserve address space and end the process
/// when it lacks, an emulator has some for itself and does not pass the limit on.
inline bool limitsMemory()
{
    return !kSanitized && emulator().isEmpty();
}

/// A limit of the process, until the end of the scope.
class ResourceLimit
{
public:
    ResourceLimit(__rlimit_resource what, rlim_t soft)
        : resource(what)
    {
        getrlimit(resource, &before);
        const rlimit limit{soft, before.rlim_max};
        setrlimit(resource, &limit);
    }
    ~ResourceLimit() { setrlimit(resource, &before); }
    Q_DISABLE_COPY_MOVE(ResourceLimit)

private:
    __rlimit_resource resource;
    rlimit before = {};
};

/// The limit of RLIMIT_AS that leaves `bytes` to be allocated; none where it does not hold.
inline rlim_t addressSpaceFor(rlim_t bytes)
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!limitsMemory() || !statm.open(QIODevice::ReadOnly))
        return RLIM_INFINITY;
    const auto pages = statm.readAll().split(' ').constFirst().toULongLong();
    return static_cast<rlim_t>(pages) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + bytes;
}
