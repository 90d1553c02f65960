#pragma once

#include <windows.h>

// What the store provider of these tests is told to do wrong and what it tells of itself, across its
// library's border: plain data only.

enum class FaultPlace : LONG
{
    nowhere,
    mapiCall,        // a method of a MAPI object, or the logging on
    diskOperation    // a read, write, lock ... that SQLite asks of the system
};

enum class FaultKind : LONG
{
    // Of a MAPI call.
    refused,           // fails with `code` and does nothing
    doneYetRefused,    // the first call from the chosen one on that changes anything does so and fails with
                       // `code`
    warned,            // the warning or the errors beside success that the method has; others are refused

    // Of a disk operation; each befalls the first one it fits from the chosen one on.
    failing,     // any operation fails as input or output
    diskFull,    // a write finds no room
    locked,      // a lock is held by somebody else
    torn,        // half of what a write should write is written before it fails
    death        // the process ends in the middle of any operation
};

struct FaultPlan
{
    FaultPlace place = FaultPlace::nowhere;
    FaultKind kind = FaultKind::refused;
    HRESULT code = S_OK;
    LONG number = 0;       // which call or operation, from 1
    LONG lasts = FALSE;    // whether it goes on failing from then on
};

struct FaultReport
{
    LONG mapiCalls = 0;
    LONG diskOperations = 0;
    LONG faults = 0;              // how often something failed by plan
    LONG firstFaultAt = 0;        // the number of the call or operation
    char firstFault[200] = "";    // and its name
    LONG liveObjects = 0;         // MAPI objects that nobody has released
    LONG openFiles = 0;
};

// The library's exports. A new plan begins at 1 to count again.
using SetFaultPlanFunction = void WINAPI(const FaultPlan* plan);
using GetFaultReportFunction = void WINAPI(FaultReport* report);

inline constexpr DWORD deathExitCode = 77;
