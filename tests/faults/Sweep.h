#pragma once

#include "tests/faults/SmallWorld.h"

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>

// One place in one run where something goes wrong in one way.
struct SweepCase
{
    RunChoice choice;
    LONG number = 0;         // which call or operation, from 1
    std::size_t kind = 0;    // the way, counted by the test
};

// What a sweep goes through: `count` tells the calls of a run when all goes well, `attempt` makes one run
// with its mishap, by ExpectPromisesKept, and yields how often it happened.
struct Sweep
{
    const char* what;    // "MAPI calls"
    std::size_t kinds;
    std::function<LONG(const RunChoice&)> count;
    std::function<LONG(const SweepCase&)> attempt;
};

// The calls of a run with every criterion, one after another or, where there are many, one in a few, each
// with an action and a kind in turn; in the long form (the environment's TQODR_LONG) every call of every run
// with every kind in turn, and every kind for the calls of the run with every criterion. Which come together
// depends on a seed, printed with the figures; TQODR_SEED gives one. TQODR_SHARE=2/3 makes the second third
// of the cases, so that some processes with one seed may share the long form. A case that leaves memory
// behind each time it is made again fails. Ends with the first case that fails.
void RunSweep(const Sweep& sweep);

bool IsLongForm();
unsigned Seed();    // one for a process
