#include "tools/docpage/EndHeld.h"

#include <algorithm>

EndHeld::EndHeld()
{
    sigemptyset(&m_held);
    for (const int signal : kEndingSignals) {
        struct sigaction action = {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            sigaddset(&m_held, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &m_held, &m_before);
}

EndHeld::~EndHeld()
{
    ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

bool EndHeld::isWaiting() const
{
    sigset_t pending;
    ::sigpending(&pending);
    return std::any_of(kEndingSignals.begin(), kEndingSignals.end(), [&](int signal) {
        return sigismember(&pending, signal) == 1 && sigismember(&m_held, signal) == 1 &&
               sigismember(&m_before, signal) == 0;
    });
}
