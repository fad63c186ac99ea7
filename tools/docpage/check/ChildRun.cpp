#include "tools/docpage/check/ChildRun.h"

#include "tools/docpage/LibraryLog.h"

#include <QDeadlineTimer>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kChildFailed = 1;

// Never above what the process had before.
void limitResource(__rlimit_resource resource, rlim_t amount)
{
    rlimit limit = {};
    ::getrlimit(resource, &limit);
    limit.rlim_cur = std::min(limit.rlim_cur, amount);
    ::setrlimit(resource, &limit);
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
        limitResource(RLIMIT_AS, present + more);
    limitResource(RLIMIT_CPU, static_cast<rlim_t>(limits.cpuSeconds));
    limitResource(RLIMIT_CORE, 0); // a crash is expected, and told
    std::signal(SIGXCPU, SIG_DFL);
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
        applyLimits(limits);
        isDone = writeAll(descriptor, work());
    } catch (...) { // whatever it is, it ends here
    }
    ::_exit(isDone ? 0 : kChildFailed);
}

// Reads until the other end is closed, or time is up.
bool readAll(int descriptor, int seconds, QByteArray &bytes)
{
    const QDeadlineTimer deadline(qint64(seconds) * 1000);
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

int waitFor(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

ChildResult resultOf(int status, const QByteArray &answer)
{
    using Ending = ChildResult::Ending;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        return {Ending::TimedOut, {}, QStringLiteral("takes too long")};
    if (WIFSIGNALED(status))
        return {Ending::Crashed, {}, QString::fromLocal8Bit(::strsignal(WTERMSIG(status)))};
    if (WEXITSTATUS(status) != 0)
        return {Ending::Crashed, {}, QStringLiteral("exit status %1").arg(WEXITSTATUS(status))};
    return {Ending::Finished, answer, {}};
}

} // namespace

ChildResult runInChild(const std::function<QByteArray()> &work, const ChildLimits &limits)
{
    std::array<int, 2> ends = {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {ChildResult::Ending::NotStarted, {}, qt_error_string(errno)};
    const pid_t child = ::fork();
    if (child == 0)
        workAsChild(work, limits, ends[1]);
    const int error = errno;
    ::close(ends[1]);
    ChildResult result{ChildResult::Ending::NotStarted, {}, qt_error_string(error)};
    if (child > 0) {
        QByteArray answer;
        const bool isInTime = readAll(ends[0], limits.wallSeconds, answer);
        if (!isInTime)
            ::kill(child, SIGKILL);
        result = resultOf(waitFor(child), answer);
        if (!isInTime)
            result = {ChildResult::Ending::TimedOut, {}, QStringLiteral("takes too long")};
    }
    ::close(ends[0]);
    return result;
}
