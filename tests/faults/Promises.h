#pragma once

#include "tests/faults/EngineSession.h"
#include "tests/faults/SmallWorld.h"

#include <windows.h>

#include <functional>
#include <string>

// Something that goes wrong in a run.
struct Mishap
{
    std::string name;
    std::function<void(EngineSession&)> arrange;    // before the run; may be empty
    std::function<void()> lift;                     // after it: all goes well again
    std::function<LONG()> faults;                   // how much has gone wrong so far
    EngineSession::Wrap wrap;                       // may be empty
    bool lasts = false;                             // it goes on going wrong
};

// Makes the run over a world of its own with the mishap in it, and then the same run once more with the same
// session and without. Expects of the first that it ends; that the store is whole; that each message is as it
// was or as the action makes it, once, and its group keeps one that is as it was; that nothing is treated
// that the run has not found, and everything that it has found, but for what the mishap hit; that count, rows
// and report tell the same, and no more than was found. Of the second that it does exactly what is left to
// do. And of both together that nothing is left behind: objects, open files. Yields how often the mishap
// happened.
LONG ExpectPromisesKept(const RunChoice& choice, const Mishap& mishap);

// What that run comes to when all goes well.
struct CallCount
{
    LONG mapiCalls = 0;
    LONG diskOperations = 0;
    LONG diskOperationsOfSearch = 0;    // of these, up to the search's last step
};
CallCount CountCalls(const RunChoice& choice);
