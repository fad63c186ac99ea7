#include "tools/docviewer/ThreadLog.h"

#include <KxBase/KxLog.h>

#include <utility>

namespace {

constexpr int kMaxMessages = 65536; // characters; of a flood, the beginning

thread_local QString firstLine; // since it was taken
thread_local ThreadLog::DecoderMessages *listener = nullptr;

QtMessageHandler handlerBefore = nullptr;

void hear(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (listener)
        listener->add(message);
    else if (handlerBefore)
        handlerBefore(type, context, message);
}

} // namespace

void ThreadLog::divert()
{
    KxBase::KxSetLogSink(
        [](void *, Kxlogger::E_LOG_LEVEL_DEF level, const char *, const char *message) {
            if (level >= Kxlogger::LOG_LEVEL_ERROR && firstLine.isEmpty())
                firstLine = QString::fromUtf8(message);
        },
        nullptr);
    const QtMessageHandler before = qInstallMessageHandler(hear);
    if (before != hear)
        handlerBefore = before;
}

ThreadLog::DecoderMessages::DecoderMessages()
{
    listener = this;
}

ThreadLog::DecoderMessages::~DecoderMessages()
{
    listener = nullptr;
}

void ThreadLog::DecoderMessages::add(const QString &message)
{
    if (m_text.size() < kMaxMessages)
        m_text += message + QLatin1Char('\n');
}

QString ThreadLog::takeFirstLine()
{
    return std::exchange(firstLine, QString());
}
