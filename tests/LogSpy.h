#pragma once

#include <KxBase/KxLog.h>

#include <QMutex>
#include <QString>
#include <QStringList>

#include <utility>

/// Holds every line logged while it lives, as "level module message". From any thread.
class LogSpy
{
public:
    LogSpy() { KxBase::KxSetLogSink(&LogSpy::receive, this); }
    ~LogSpy() { KxBase::KxSetLogSink(nullptr, nullptr); }
    Q_DISABLE_COPY_MOVE(LogSpy)

    /// The lines so far, which are forgotten.
    QStringList takeLines()
    {
        const QMutexLocker lock(&mutex);
        return std::exchange(lines, QStringList());
    }

private:
    static void receive(void *context, Kxlogger::E_LOG_LEVEL_DEF level, const char *module,
                        const char *message)
    {
        auto *spy = static_cast<LogSpy *>(context);
        const QMutexLocker lock(&spy->mutex);
        spy->lines << QStringLiteral("%1 %2 %3")
                          .arg(QString::number(level), QString::fromUtf8(module),
                               QString::fromUtf8(message));
    }

    QMutex mutex;
    QStringList lines;
};

/// The lines of the library's failures as a LogSpy holds them; "%1" in them is the file.
inline QStringList failureLines(const QStringList &lines, const QString &file)
{
    QStringList full;
    for (const QString &line : lines) {
        full << QStringLiteral("2 VPrnt ") + line;
        full.last().replace(QStringLiteral("%1"), file);
    }
    return full;
}
