#include "tests/faults/provider/FaultState.h"

#include "localmapi/ModuleCount.h"

#include <cstdio>

void FaultState::Begin(const FaultPlan& newPlan)
{
    const std::lock_guard lock(mutex);
    plan = newPlan;
    const LONG openFiles = report.openFiles;
    report = {};
    report.openFiles = openFiles;
    over = false;
}

FaultReport FaultState::Report() const
{
    const std::lock_guard lock(mutex);
    FaultReport told = report;
    told.liveObjects = ModuleCount::Get();
    return told;
}

std::optional<FaultPlan> FaultState::Count(FaultPlace place, const char* name,
                                           bool (*fits)(FaultKind, const char*))
{
    const std::lock_guard lock(mutex);
    const LONG number = place == FaultPlace::mapiCall ? ++report.mapiCalls : ++report.diskOperations;
    if (place != plan.place || plan.number == 0 || number < plan.number || over || !fits(plan.kind, name))
        return std::nullopt;
    over = !plan.lasts;
    if (++report.faults == 1)
    {
        report.firstFaultAt = number;
        std::snprintf(report.firstFault, sizeof(report.firstFault), "%s", name);
    }
    return plan;
}

void FaultState::FileOpened()
{
    const std::lock_guard lock(mutex);
    ++report.openFiles;
}

void FaultState::FileClosed()
{
    const std::lock_guard lock(mutex);
    --report.openFiles;
}

FaultState& Faults()
{
    static FaultState state;
    return state;
}
