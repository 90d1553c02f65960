#pragma once

#include "tests/faults/FaultPlan.h"

#include <windows.h>

// The store provider that does wrong by plan, behind the system's mapi32.dll of this process alone. It is
// loaded by the first call and stays; no other provider can be had afterwards.
class FaultyProvider
{
public:
    static FaultyProvider& Get();

    void Plan(const FaultPlan& plan) const { setPlan(&plan); }
    FaultReport Report() const;

    FaultyProvider(const FaultyProvider&) = delete;
    FaultyProvider& operator=(const FaultyProvider&) = delete;

private:
    FaultyProvider();

    SetFaultPlanFunction* setPlan = nullptr;
    GetFaultReportFunction* getReport = nullptr;
};
