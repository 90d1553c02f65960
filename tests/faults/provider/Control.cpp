// The exports by which a test speaks to its store provider.
#include "tests/faults/provider/DiskFaults.h"
#include "tests/faults/provider/FaultState.h"

extern "C" __declspec(dllexport) void WINAPI SetFaultPlan(const FaultPlan* plan)
{
    StandBeforeTheDisk();
    Faults().Begin(*plan);
}

extern "C" __declspec(dllexport) void WINAPI GetFaultReport(FaultReport* report)
{
    *report = Faults().Report();
}
