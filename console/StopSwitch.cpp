#include "console/StopSwitch.h"

#include <mutex>
#include <utility>

namespace
{
// The system gives its handler no context. Locked by its threads and by the one that makes and ends the
// switch.
std::mutex guard;
StopSwitch* current = nullptr;
std::atomic<bool> ended{false};
}    // namespace

StopSwitch::StopSwitch(std::atomic<LONG>& stopRequested, std::function<void(bool)> onRequest)
    : stopRequested(stopRequested),
      onRequest(std::move(onRequest))
{
    {
        const std::scoped_lock lock(guard);
        current = this;
        ended = false;
    }
    // A parent that ignores Ctrl+C hands that on; here it is always heard.
    SetConsoleCtrlHandler(nullptr, FALSE);
    SetConsoleCtrlHandler(Handle, TRUE);
}

StopSwitch::~StopSwitch()
{
    // The handler stays: a late Ctrl+C must not turn the exit code of a finished run into that of a killed
    // one.
    {
        const std::scoped_lock lock(guard);
        current = nullptr;
    }
    ended = true;
    ended.notify_all();
}

void StopSwitch::Request()
{
    onRequest(stopRequested.exchange(1) == 0);
}

BOOL WINAPI StopSwitch::Handle(DWORD event)
{
    {
        const std::scoped_lock lock(guard);
        if (current)
            current->Request();
    }
    // The process ends when this returns from any other event: the message in hand is finished first.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ended.wait(false);
    return TRUE;
}
