#include "import/Interruption.h"

#include <atomic>
#include <csignal>

namespace
{
// Written by the signal handler alone.
std::atomic<int> caughtSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void KeepSignal(int signal)
{
    caughtSignal = signal;
}
}    // namespace

void CatchSignals()
{
    struct sigaction action = {};
    action.sa_handler = KeepSignal;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    for (const int signal : {SIGPIPE, SIGXFSZ})
        sigaction(signal, &action, nullptr);
}

void ThrowIfInterrupted()
{
    if (const int signal = caughtSignal)
        throw Interrupted(signal);
}
