#pragma once

#include "store/RDOSession.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>

// How a late-bound call goes wrong.
enum class InvokeFault
{
    refused,            // fails with an HRESULT alone
    refusedWithInfo,    // and with exception information
    refusedFromThenOn,
    withoutObject,    // gives no object where it should give one; other calls are refused
    wrongType,        // gives what cannot be made what it should give
    slow              // takes its time, in which the user stops the run
};

// The calls that go through the objects below, and the one among them that goes wrong.
class InvokeFaults
{
public:
    InvokeFault fault = InvokeFault::refused;
    LONG number = 0;    // which call, from 1; 0 for none
    std::function<void()> onSlow;

    // Counts a call; true when it is to go wrong.
    bool Count();

    std::atomic<LONG> calls = 0;
    std::atomic<LONG> faults = 0;
    std::atomic<LONG> liveObjects = 0;
};

// The same session behind an object that hands every call on, and so does every object that it gives.
// `faults` has to outlive it.
CRDOSession BehindFaults(const CRDOSession& session, InvokeFaults& faults);
