#include "tools/docpage/LibraryLog.h"

#include <KxBase/KxLog.h>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kMaxMessages = 65536; // characters

QString firstLine; // since it was taken
QString messages;  // since they were taken

} // namespace

void LibraryLog::divert()
{
    KxBase::KxSetLogSink(
        [](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *message) {
            if (firstLine.isEmpty())
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
    : m_standardError(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDERR_FILENO);
    ::close(nowhere);
}

LibraryLog::DecoderSilence::~DecoderSilence()
{
    ::dup2(m_standardError, STDERR_FILENO);
    ::close(m_standardError);
}
