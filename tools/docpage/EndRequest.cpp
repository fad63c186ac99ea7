#include "tools/docpage/EndRequest.h"

#include "tools/docpage/EndHeld.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

// For the handler, which gets nothing but the signal.
std::atomic<int> received{0};
std::atomic<int> event{-1};
std::array<struct sigaction, kEndingSignals.size()> before;

bool isIgnored(size_t at)
{
    return before[at].sa_handler == SIG_IGN;
}

void receive(int signal)
{
    const int error = errno;
    for (size_t i = 0; i < kEndingSignals.size(); ++i) {
        if (!isIgnored(i))
            ::signal(kEndingSignals[i], SIG_DFL);
    }
    received = signal;
    ::eventfd_write(event, 1);
    errno = error;
}

} // namespace

EndRequest::EndRequest()
{
    received = 0;
    const EndHeld held; // until all is set up
    event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = receive;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : kEndingSignals) // no other than the first
        sigaddset(&action.sa_mask, signal);
    for (size_t i = 0; i < kEndingSignals.size(); ++i) // the handler looks at all of them
        ::sigaction(kEndingSignals[i], nullptr, &before[i]);
    for (size_t i = 0; i < kEndingSignals.size(); ++i) {
        if (!isIgnored(i))
            ::sigaction(kEndingSignals[i], &action, nullptr);
    }
}

EndRequest::~EndRequest()
{
    for (size_t i = 0; i < kEndingSignals.size(); ++i)
        ::sigaction(kEndingSignals[i], &before[i], nullptr);
    ::close(event.exchange(-1));
}

bool EndRequest::isMade() const
{
    return received != 0;
}

int EndRequest::descriptor() const
{
    return event;
}

void EndRequest::grant() const
{
    ::raise(received); // which has its default action again
}
