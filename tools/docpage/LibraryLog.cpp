#include "tools/docpage/LibraryLog.h"

#include <KxBase/KxLog.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

QString last;

} // namespace

void LibraryLog::divert()
{
    KxBase::KxSetLogSink([](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *,
                            const char *message) { last = QString::fromUtf8(message); },
                         nullptr);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

QString LibraryLog::lastLine()
{
    return last;
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
