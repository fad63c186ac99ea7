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
