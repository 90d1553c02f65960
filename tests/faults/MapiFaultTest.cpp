// The automation server above a message store whose calls fail.
#include "tests/faults/FaultyProvider.h"
#include "tests/faults/Promises.h"
#include "tests/faults/Sweep.h"

#include <windows.h>

#include <mapicode.h>

#include <gtest/gtest.h>

#include <array>

namespace
{
struct NamedFault
{
    const char* name;
    FaultKind kind;
    HRESULT code;
    bool lasts = false;
};

constexpr std::array faults{
    NamedFault{"refused: call failed", FaultKind::refused, MAPI_E_CALL_FAILED},
    NamedFault{"refused: not found", FaultKind::refused, MAPI_E_NOT_FOUND},
    NamedFault{"refused: no access", FaultKind::refused, MAPI_E_NO_ACCESS},
    NamedFault{"refused: object changed", FaultKind::refused, MAPI_E_OBJECT_CHANGED},
    NamedFault{"refused: not enough memory", FaultKind::refused, MAPI_E_NOT_ENOUGH_MEMORY},
    NamedFault{"refused from then on", FaultKind::refused, MAPI_E_NETWORK_ERROR, true},
    NamedFault{"done and yet refused", FaultKind::doneYetRefused, MAPI_E_CALL_FAILED},
    NamedFault{"warned: call failed", FaultKind::warned, MAPI_E_CALL_FAILED},
    NamedFault{"warned: too long", FaultKind::warned, MAPI_E_NOT_ENOUGH_MEMORY},
};

Mishap MishapAt(LONG number, const NamedFault& fault)
{
    const FaultyProvider& provider = FaultyProvider::Get();
    Mishap mishap;
    mishap.name = "MAPI call " + std::to_string(number) + " " + fault.name;
    mishap.lasts = fault.lasts;
    mishap.arrange = [&provider, number, fault](EngineSession&) {
        provider.Plan({FaultPlace::mapiCall, fault.kind, fault.code, number, fault.lasts});
    };
    mishap.lift = [&provider] { provider.Plan({}); };
    mishap.faults = [&provider] { return provider.Report().faults; };
    return mishap;
}

TEST(MapiFaults, LoseNothingWhateverCallFails)
{
    RunSweep(
        {.what = "MAPI calls",
         .kinds = faults.size(),
         .count = [](const RunChoice& choice) { return CountCalls(choice).mapiCalls; },
         .attempt = [](const SweepCase& attempt)
         { return ExpectPromisesKept(attempt.choice, MishapAt(attempt.number, faults[attempt.kind])); }});
}
}    // namespace
