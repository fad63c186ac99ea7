#pragma once

#include "tools/docimport/engine/Confinement.h"

#include <QProcess>

#include <sys/types.h>

/// A process of the engine: confined, in a process group of its own so that it ends with all that
/// it starts, and killed by the system when this program ends by whatever means. The thread that
/// starts it must live as long as it does.
class EngineProcess : public QProcess
{
public:
    explicit EngineProcess(const Confinement &confinement);

    /// Starts it in `folder`, in which it may do anything. What it prints goes into `log`.
    void begin(const QString &program, const QStringList &arguments, const QString &folder,
               const QString &log);

    /// Ends it, and what it has left, and waits until it has ended.
    void end();

protected:
    void setupChildProcess() override;

private:
    const Confinement &m_confinement;
    const pid_t m_parent;
    pid_t m_group = 0; // of processes; 0 when there is none
};
