// The engine above an automation server whose calls fail.
#include "tests/faults/FaultyDispatch.h"
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
    InvokeFault kind;
};

constexpr std::array faultKinds{
    NamedFault{"fails", InvokeFault::refused},
    NamedFault{"fails with exception information", InvokeFault::refusedWithInfo},
    NamedFault{"and all after it fail", InvokeFault::refusedFromThenOn},
    NamedFault{"gives no object", InvokeFault::withoutObject},
    NamedFault{"gives a wrong type", InvokeFault::wrongType},
    NamedFault{"is slow, and the user stops the run", InvokeFault::slow},
};

LONG CountInvokes(const RunChoice& choice)
{
    InvokeFaults faults;
    Mishap none{"nothing", {}, {}, [] { return 0; }, {}};
    none.wrap = [&](const CRDOSession& session) { return BehindFaults(session, faults); };
    LONG calls = 0;
    none.lift = [&] { calls = faults.calls; };
    ExpectPromisesKept(choice, none);
    return calls;
}

LONG FailAt(const SweepCase& attempt)
{
    InvokeFaults faults;
    faults.fault = faultKinds[attempt.kind].kind;
    Mishap mishap;
    mishap.name = "call " + std::to_string(attempt.number) + " " + faultKinds[attempt.kind].name;
    mishap.wrap = [&](const CRDOSession& session) { return BehindFaults(session, faults); };
    mishap.arrange = [&](EngineSession& session)
    {
        faults.number = attempt.number;
        faults.onSlow = [&session] { session.Stop(); };
    };
    mishap.lift = [&] { faults.number = 0; };
    mishap.faults = [&] { return faults.faults.load(); };
    mishap.lasts = faults.fault == InvokeFault::refusedFromThenOn;

    const LONG happened = ExpectPromisesKept(attempt.choice, mishap);

    EXPECT_EQ(faults.liveObjects, 0);
    return happened;
}

TEST(AutomationFaults, LoseNothingWhateverCallFails)
{
    RunSweep(
        {.what = "automation calls", .kinds = faultKinds.size(), .count = CountInvokes, .attempt = FailAt});
}
}    // namespace
