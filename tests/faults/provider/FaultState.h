#pragma once

#include "tests/faults/FaultPlan.h"

#include <mutex>
#include <optional>

// The provider's plan and what came of it. Safe on any thread.
class FaultState
{
public:
    void Begin(const FaultPlan& newPlan);
    FaultReport Report() const;

    // Counts one call or operation; its fault when it has one by plan and `fits` the planned kind. `name` is
    // for people.
    std::optional<FaultPlan> Count(FaultPlace place, const char* name,
                                   bool (*fits)(FaultKind, const char* name));

    void FileOpened();
    void FileClosed();

private:
    mutable std::mutex mutex;    // guards all below
    FaultPlan plan;
    FaultReport report;
    bool over = false;
};

FaultState& Faults();
