#include "console/StopSwitch.h"

#include <mutex>

namespace
{
// The system gives its handler no context. Locked by its threads and by the one that makes and ends the
// switch.
std::mutex guard;
StopSwitch* current = nullptr;
std::atomic<bool> ended{false};
}    // namespace

StopSwitch::StopSwitch(std::atomic<LONG>& stopRequested, OutputStream* notices)
    : stopRequested(stopRequested),
      notices(notices)
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
    SetConsoleCtrlHandler(Handle, FALSE);
    {
        const std::scoped_lock lock(guard);
        current = nullptr;
    }
    ended = true;
    ended.notify_all();
}

void StopSwitch::Request()
{
    if (stopRequested.exchange(1) == 0 && notices)
        notices->Write(L"\nStopping ...\n");
}

BOOL WINAPI StopSwitch::Handle(DWORD event)
{
    {
        const std::scoped_lock lock(guard);
        if (!current)
            return FALSE;
        current->Request();
    }
    // The process ends when this returns from such an event: the message in hand is finished first.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ended.wait(false);
    return TRUE;
}
