#pragma once

#include <QtGlobal>

#include <array>
#include <csignal>

/// The signals by which users and the system end a program.
constexpr std::array<int, 4> kEndingSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// While it lives, what would end the program waits. What is ignored is not held: it would wait all
/// the same, and be taken for an end. For this thread, so that no other may be at work.
class EndHeld
{
public:
    EndHeld();
    ~EndHeld();
    Q_DISABLE_COPY_MOVE(EndHeld)

    /// Whether a signal waits that was not held before.
    bool isWaiting() const;

private:
    sigset_t m_held;
    sigset_t m_before;
};
