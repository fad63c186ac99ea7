#include "tools/docpage/check/ChildRun.h"

#include "tools/docpage/LibraryLog.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kChildFailed = 1;
constexpr int kChildOutOfMemory = 112; // which work does not come to by itself

// Never above what the process had before.
void limitResource(__rlimit_resource resource, rlim_t soft, rlim_t hard)
{
    rlimit limit = {};
    ::getrlimit(resource, &limit);
    limit.rlim_cur = std::min(limit.rlim_cur, soft);
    limit.rlim_max = std::min(limit.rlim_max, hard);
    ::setrlimit(resource, &limit);
}

// The first second too many is told by a signal that work may catch, the next one by one that ends
// it.
void limitProcessorTime(int seconds)
{
    const auto soft = static_cast<rlim_t>(seconds);
    limitResource(RLIMIT_CPU, soft, soft + 1);
    std::signal(SIGXCPU, SIG_DFL);
    sigset_t told = {};
    sigemptyset(&told);
    sigaddset(&told, SIGXCPU);
    ::sigprocmask(SIG_UNBLOCK, &told, nullptr);
}

int statusOfException()
{
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return kChildOutOfMemory;
    } catch (...) {
        return kChildFailed;
    }
}

// Memory may lack where no exception may leave.
[[noreturn]] void endForTermination()
{
    if (std::current_exception() && statusOfException() == kChildOutOfMemory)
        ::_exit(kChildOutOfMemory);
    std::abort();
}

// Bytes of address space; unlimited when the system does not tell.
rlim_t addressSpace()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return RLIM_INFINITY;
    const qulonglong pages = file.readAll().split(' ').constFirst().toULongLong();
    return static_cast<rlim_t>(pages) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void applyLimits(const ChildLimits &limits)
{
    const rlim_t present = addressSpace();
    const auto more = static_cast<rlim_t>(limits.memory);
    if (present < RLIM_INFINITY - more)
        limitResource(RLIMIT_AS, present + more, present + more);
    limitProcessorTime(limits.cpuSeconds);
    limitResource(RLIMIT_CORE, 0, 0);   // a crash is expected, and told
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody waits for it then
}

bool writeAll(int descriptor, const QByteArray &bytes)
{
    for (int at = 0; at < bytes.size();) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + at, static_cast<size_t>(bytes.size() - at));
        if (written < 0 && errno != EINTR)
            return false;
        at += static_cast<int>(std::max<ssize_t>(written, 0));
    }
    return true;
}

// Ends without a word to the parent's objects, which are not the child's to destroy.
[[noreturn]] void workAsChild(const std::function<QByteArray()> &work, const ChildLimits &limits,
                              int descriptor)
{
    bool isDone = false;
    try {
        const LibraryLog::DecoderSilence silence;
        std::set_terminate(endForTermination);
        applyLimits(limits);
        isDone = writeAll(descriptor, work());
    } catch (...) { // whatever it is, it ends here
        ::_exit(statusOfException());
    }
    ::_exit(isDone ? 0 : kChildFailed);
}

// Reads until the other end is closed, or time is up.
bool readAll(int descriptor, const QDeadlineTimer &deadline, QByteArray &bytes)
{
    std::array<char, 4096> buffer = {};
    for (;;) {
        pollfd waited = {descriptor, POLLIN, 0};
        const int ready = ::poll(&waited, 1, static_cast<int>(deadline.remainingTime()));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return false;
        const ssize_t size = ::read(descriptor, buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return size == 0;
        bytes.append(buffer.data(), static_cast<int>(size));
    }
}

// Waits for the end of the child, and brings it about when time is up. A child may have closed its
// end of the pipe long before, and the system has no way to wait for it and for a time together.
int waitFor(pid_t child, const QDeadlineTimer &deadline, rusage &usage)
{
    constexpr int kPause = 1; // ms
    int status = 0;
    for (;;) {
        const bool isTimeUp = deadline.hasExpired();
        if (isTimeUp)
            ::kill(child, SIGKILL);
        const pid_t ended = ::wait4(child, &status, isTimeUp ? 0 : WNOHANG, &usage);
        if (ended == child || (ended < 0 && errno != EINTR))
            return status;
        if (ended == 0)
            ::poll(nullptr, 0, kPause);
    }
}

qint64 milliseconds(const rusage &usage)
{
    const qint64 seconds = qint64(usage.ru_utime.tv_sec) + usage.ru_stime.tv_sec;
    const qint64 microseconds = qint64(usage.ru_utime.tv_usec) + usage.ru_stime.tv_usec;
    return seconds * 1000 + microseconds / 1000;
}

ChildResult resultOf(int status, const QByteArray &answer)
{
    using Ending = ChildResult::Ending;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        return {Ending::TimedOut, {}, QStringLiteral("takes too long")};
    if (WIFSIGNALED(status))
        return {Ending::Crashed, {}, QString::fromLocal8Bit(::strsignal(WTERMSIG(status)))};
    if (WEXITSTATUS(status) == kChildOutOfMemory)
        return {Ending::OutOfMemory, {}, QStringLiteral("needs more memory")};
    if (WEXITSTATUS(status) != 0)
        return {Ending::Crashed, {}, QStringLiteral("exit status %1").arg(WEXITSTATUS(status))};
    return {Ending::Finished, answer, {}};
}

ChildResult watch(pid_t child, int descriptor, const ChildLimits &limits)
{
    QElapsedTimer timer;
    timer.start();
    const QDeadlineTimer deadline(qint64(limits.wallSeconds) * 1000);
    QByteArray answer;
    if (!readAll(descriptor, deadline, answer))
        ::kill(child, SIGKILL);
    rusage usage = {};
    ChildResult result = resultOf(waitFor(child, deadline, usage), answer);
    result.cpuTime = milliseconds(usage);
    result.wallTime = timer.elapsed();
    const bool isKilled = result.ending == ChildResult::Ending::Crashed;
    if (isKilled && (deadline.hasExpired() || result.cpuTime >= qint64(limits.cpuSeconds) * 1000))
        result = {ChildResult::Ending::TimedOut,
                  {},
                  QStringLiteral("takes too long"),
                  result.cpuTime,
                  result.wallTime};
    return result;
}

} // namespace

ChildResult runInChild(const std::function<QByteArray()> &work, const ChildLimits &limits)
{
    std::array<int, 2> ends = {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {ChildResult::Ending::NotStarted, {}, qt_error_string(errno)};
    std::signal(SIGCHLD, SIG_DFL); // ignored, as a starter may have left it, no end is told
    const pid_t child = ::fork();
    if (child == 0)
        workAsChild(work, limits, ends[1]);
    const int error = errno;
    ::close(ends[1]);
    const ChildResult result =
        child > 0 ? watch(child, ends[0], limits)
                  : ChildResult{ChildResult::Ending::NotStarted, {}, qt_error_string(error)};
    ::close(ends[0]);
    return result;
}
