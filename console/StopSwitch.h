#pragma once

#include <windows.h>

#include <atomic>
#include <functional>

// While it lives, Ctrl+C and Ctrl+Break request a stop instead of ending the process, however often they are
// pressed; closing the window, logging off and shutting down request it too and wait until this object ends,
// for as long as the system grants. At most one lives at a time. After it Ctrl+C is ignored: the process is
// about to end.
class StopSwitch
{
public:
    // `onRequest` is called at every request, on a thread of the system's, with true for the first one.
    // `stopRequested` is borrowed.
    StopSwitch(std::atomic<LONG>& stopRequested, std::function<void(bool isFirst)> onRequest);
    StopSwitch(const StopSwitch&) = delete;
    StopSwitch& operator=(const StopSwitch&) = delete;
    ~StopSwitch();

private:
    static BOOL WINAPI Handle(DWORD event);    // on a thread of the system's
    void Request();

    std::atomic<LONG>& stopRequested;
    std::function<void(bool)> onRequest;
};
