#include "tools/docpage/LibraryLog.h"

#include <KxBase/KxLog.h>

#include <mutex>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kMaxMessages = 65536; // characters

QString firstLine; // since it was taken
QString messages;  // since they were taken

std::mutex silenceMutex; // guards what follows
int silences = 0;        // that live
int standardError = -1;  // a copy of the descriptor, while there are any

} // namespace

void LibraryLog::divert()
{
    KxBase::KxSetLogSink(
        [](void *, Kxlogger::E_LOG_LEVEL_DEF level, const char *, const char *message) {
            if (level == Kxlogger::LOG_LEVEL_ERROR && firstLine.isEmpty())
                firstLine = QString::fromUtf8(message);
        },
        nullptr);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
        if (messages.size() < kMaxMessages)
            messages += message + QLatin1Char('\n');
    });
}

QString LibraryLog::takeFirstLine()
{
    return std::exchange(firstLine, QString());
}

QString LibraryLog::takeMessages()
{
    return std::exchange(messages, QString());
}

LibraryLog::DecoderSilence::DecoderSilence()
{
    const std::lock_guard<std::mutex> lock(silenceMutex);
    if (silences++ > 0)
        return;
    standardError = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDERR_FILENO);
    ::close(nowhere);
}

LibraryLog::DecoderSilence::~DecoderSilence()
{
    const std::lock_guard<std::mutex> lock(silenceMutex);
    if (--silences > 0)
        return;
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
}
