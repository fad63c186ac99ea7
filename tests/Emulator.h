#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>

/// What runs programs of this build on another processor than theirs; empty on their own.
inline QByteArray emulator()
{
    return qgetenv("DOCDISPLAY_EMULATOR");
}

/// Qt forks for a class of its own; for QProcess it calls vfork(), which emulators take for fork().
class ForkedProcess : public QProcess
{
};

/// The words that start a program of this build.
inline QStringList commandOf(const QString &program)
{
    const QByteArray runner = emulator();
    return runner.isEmpty() ? QStringList{program}
                            : QStringList{QFile::decodeName(runner), program};
}

/// What a program said on standard error, without the emulator's word on how it ended.
inline QByteArray withoutEmulator(const QByteArray &err)
{
    const int at = emulator().isEmpty() ? -1 : err.indexOf("qemu: uncaught target signal");
    return at < 0 ? err : err.left(at);
}
