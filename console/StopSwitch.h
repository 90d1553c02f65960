#pragma once

#include "console/OutputStream.h"

#include <windows.h>

#include <atomic>

// While it lives, Ctrl+C and Ctrl+Break request a stop instead of ending the process, however often they are
// pressed; closing the window, logging off and shutting down request it too and wait until this object ends,
// for as long as the system grants. At most one lives at a time.
class StopSwitch
{
public:
    // `stopRequested` and `notices`, on which the request is acknowledged unless it is null, are borrowed.
    StopSwitch(std::atomic<LONG>& stopRequested, OutputStream* notices);
    StopSwitch(const StopSwitch&) = delete;
    StopSwitch& operator=(const StopSwitch&) = delete;
    ~StopSwitch();

private:
    static BOOL WINAPI Handle(DWORD event);    // on a thread of the system's
    void Request();

    std::atomic<LONG>& stopRequested;
    OutputStream* notices;
};
