#include <KxBase/KxLog.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

#include <poll.h>
#include <pthread.h>
#include <unistd.h>

using Kxlogger::E_LOG_LEVEL_DEF;

namespace KxBase {

namespace {

// All of it is constant-initialised, so that logging works before and after main(), too.
std::mutex outputMutex;             // held while a line goes out
KxLogSink currentSink = nullptr;    // guarded by outputMutex
void *currentContext = nullptr;     // guarded by outputMutex, borrowed
thread_local bool inOutput = false; // this thread holds outputMutex

class ErrnoKeeper
{
public:
    ErrnoKeeper() = default;
    ~ErrnoKeeper() { restore(); }
    ErrnoKeeper(const ErrnoKeeper &) = delete;
    ErrnoKeeper &operator=(const ErrnoKeeper &) = delete;

    void restore() const { errno = m_errno; }

private:
    const int m_errno = errno;
};

/// Holds outputMutex; a call made from within a sink finds it held by its own thread.
class OutputLock
{
public:
    OutputLock()
        : m_isNested(inOutput)
    {
        if (!m_isNested) {
            outputMutex.lock();
            inOutput = true;
        }
    }
    ~OutputLock()
    {
        if (!m_isNested) {
            inOutput = false;
            outputMutex.unlock();
        }
    }
    OutputLock(const OutputLock &) = delete;
    OutputLock &operator=(const OutputLock &) = delete;

    bool isNested() const { return m_isNested; }

private:
    const bool m_isNested;
};

__attribute__((format(printf, 1, 0))) std::string formatted(const char *format, va_list args)
{
    const ErrnoKeeper callersErrno;
    va_list measured;
    va_copy(measured, args);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return format;

    std::string text(static_cast<std::string::size_type>(length), '\0');
    callersErrno.restore(); // for %m
    if (std::vsnprintf(text.data(), text.size() + 1, format, args) < 0)
        return format;
    text.resize(std::strlen(text.c_str())); // %c may have written a NUL
    return text;
}

std::string levelName(E_LOG_LEVEL_DEF level)
{
    switch (level) {
    case Kxlogger::LOG_LEVEL_DEBUG:
        return "debug";
    case Kxlogger::LOG_LEVEL_INFO:
        return "info";
    case Kxlogger::LOG_LEVEL_ERROR:
        return "error";
    }
    return std::to_string(static_cast<int>(level));
}

std::string standardErrorLine(E_LOG_LEVEL_DEF level, const char *module, const std::string &message)
{
    std::string line;
    for (const char c : '[' + levelName(level) + "] " + module + ": " + message) {
        if (c == '\n') {
            line += "\\n";
        } else if (c == '\r') {
            line += "\\r";
        } else {
            line += c;
        }
    }
    return line + '\n';
}

/// Keeps a write to a pipe that nobody reads from ending the process by SIGPIPE.
class PipeSignalBlocker
{
public:
    PipeSignalBlocker()
    {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~PipeSignalBlocker()
    {
        const timespec now = {0, 0};
        while (!m_wasPending && sigtimedwait(&m_signal, nullptr, &now) == -1 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    PipeSignalBlocker(const PipeSignalBlocker &) = delete;
    PipeSignalBlocker &operator=(const PipeSignalBlocker &) = delete;

private:
    sigset_t m_signal = {};
    sigset_t m_before = {};
    bool m_wasPending = false;
};

void writeToStandardError(const std::string &line)
{
    const PipeSignalBlocker noPipeSignal;
    const char *rest = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        const ssize_t written = ::write(STDERR_FILENO, rest, left);
        if (written >= 0) {
            rest += written;
            left -= static_cast<std::size_t>(written);
        } else if (errno == EAGAIN) {
            pollfd room = {STDERR_FILENO, POLLOUT, 0};
            ::poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace

// NOLINTNEXTLINE(cert-dcl50-cpp): a printf-style interface is variadic
void KxSDKCommonLog(E_LOG_LEVEL_DEF level, const char *module, const char *format, ...)
{
    const ErrnoKeeper callersErrno;
    std::string message;
    if (format) {
        va_list args;
        va_start(args, format);
        message = formatted(format, args);
        va_end(args);
    }
    message.erase(message.find_last_not_of("\r\n") + 1);
    if (!module)
        module = "";

    const OutputLock lock;
    if (currentSink && !lock.isNested()) {
        currentSink(currentContext, level, module, message.c_str());
    } else {
        writeToStandardError(standardErrorLine(level, module, message));
    }
}

void KxSetLogSink(KxLogSink sink, void *context)
{
    const OutputLock lock;
    currentSink = sink;
    currentContext = context;
}

} // namespace KxBase
