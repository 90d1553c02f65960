// The store on a disk that fails, is full or is locked.
#include "tests/faults/FaultyProvider.h"
#include "tests/faults/Promises.h"
#include "tests/faults/Sweep.h"

#include <gtest/gtest.h>

#include <array>

namespace
{
struct NamedFault
{
    const char* name;
    FaultKind kind;
    bool lasts;
};

constexpr std::array faults{
    NamedFault{"fails", FaultKind::failing, false},
    NamedFault{"and all after it fail", FaultKind::failing, true},
    NamedFault{"finds the disk full once", FaultKind::diskFull, false},
    NamedFault{"finds the disk full from then on", FaultKind::diskFull, true},
    NamedFault{"is locked out once", FaultKind::locked, false},
    NamedFault{"is locked out from then on", FaultKind::locked, true},
    NamedFault{"is torn", FaultKind::torn, false},
};

Mishap MishapAt(LONG number, const NamedFault& fault)
{
    const FaultyProvider& provider = FaultyProvider::Get();
    Mishap mishap;
    mishap.name = "disk operation " + std::to_string(number) + " " + fault.name;
    mishap.lasts = fault.lasts;
    mishap.arrange = [&provider, number, fault](EngineSession&) {
        provider.Plan({FaultPlace::diskOperation, fault.kind, S_OK, number, fault.lasts});
    };
    mishap.lift = [&provider] { provider.Plan({}); };
    mishap.faults = [&provider] { return provider.Report().faults; };
    return mishap;
}

TEST(DiskFaults, LoseNothingWhateverOperationFails)
{
    RunSweep(
        {.what = "disk operations",
         .kinds = faults.size(),
         .count = [](const RunChoice& choice) { return CountCalls(choice).diskOperations; },
         .attempt = [](const SweepCase& attempt)
         { return ExpectPromisesKept(attempt.choice, MishapAt(attempt.number, faults[attempt.kind])); }});
}
}    // namespace
