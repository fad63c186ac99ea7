#pragma once

#include "tools/docpage/LibraryLog.h"

#include <QString>

/// What the library logs, kept apart by thread: the window's thread and the workers each want to
/// know why their own page cannot be shown.
namespace ThreadLog {

/// Keeps what the library logs from now on, instead of writing it to standard error, and what Qt
/// says while a DecoderMessages lives.
void divert();

/// The library's first error on this thread since the last call: the cause is logged first, then
/// what comes of it. Empty when there is none.
QString takeFirstLine();

/// What Qt's decoders report on this thread while it lives; nothing of it goes to standard error,
/// to which some of them write themselves. One at a time on a thread.
class DecoderMessages
{
public:
    DecoderMessages();
    ~DecoderMessages();
    Q_DISABLE_COPY_MOVE(DecoderMessages)

    const QString &text() const { return m_text; }
    void add(const QString &message);

private:
    QString m_text;
    const LibraryLog::DecoderSilence m_silence;
};

} // namespace ThreadLog
