#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// What a child process may take.
struct ChildLimits
{
    qint64 memory;         ///< bytes, besides what the process has already
    int cpuSeconds = 60;   ///< of work
    int wallSeconds = 600; ///< until it is given up, also when it does not work
};

/// What came of work in a child process.
struct ChildResult
{
    enum class Ending { Finished, Crashed, OutOfMemory, TimedOut, NotStarted };
    Ending ending = Ending::NotStarted;
    QByteArray answer;   ///< what the work returned, when it finished
    QString fault;       ///< how it ended otherwise
    qint64 cpuTime = 0;  ///< ms of work that it took
    qint64 wallTime = 0; ///< ms until it ended
};

/// Runs `work` in a copy of this process, which has to have no other threads, so that whatever it
/// does to itself or the memory is of no consequence. What is written to standard error is lost.
ChildResult runInChild(const std::function<QByteArray()> &work, const ChildLimits &limits);
