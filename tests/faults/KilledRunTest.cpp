// Runs whose process ends in the middle, at whatever read, write or lock of the store's files. The tests run
// their own program a second time as the process to be killed.
#include "tests/faults/FaultyProvider.h"
#include "tests/faults/Promises.h"
#include "tests/faults/Sweep.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/ThisProgram.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>

namespace
{
constexpr wchar_t planVariable[] = L"TQODR_KILLED_RUN";    // action, criteria and operation

struct KilledRun
{
    int action = 0;
    int criteria = 0;
    LONG operation = 0;

    RunChoice Choice() const { return SmallRun(action, static_cast<Criteria>(criteria)); }
};

// True when the run died and did not end by itself.
bool RunAndDie(const KilledRun& run)
{
    SetEnvironmentVariableW(planVariable,
                            (std::to_wstring(run.action) + L" " + std::to_wstring(run.criteria) + L" " +
                             std::to_wstring(run.operation))
                                .c_str());
    const OwnedProcess process = StartInThisProgram(L"RunToBeKilled.DISABLED_DiesAtItsOperation");
    SetEnvironmentVariableW(planVariable, nullptr);
    EXPECT_EQ(WaitForSingleObject(process.get(), 120'000), WAIT_OBJECT_0);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.get(), &exitCode);
    EXPECT_TRUE(exitCode == deathExitCode || exitCode == 0) << "ended with " << exitCode;
    return exitCode == deathExitCode;
}

// How many of the run's duplicates are treated, when these are the first and nothing else has happened.
std::optional<std::size_t> CountTreated(const WizardStore& store, const ExpectedRun& expected)
{
    const std::vector<std::string> messages = store.Messages();
    for (std::size_t treated = 0; treated <= expected.CountDuplicates(); ++treated)
        if (messages == expected.MessagesAfter(treated))
            return treated;
    return std::nullopt;
}

void ExpectTheSameRunEndsTheWork(const WizardStore& store, const RunChoice& choice)
{
    const ExpectedRun expected(store, choice);
    FaultyProvider::Get().Plan({});
    EngineSession session([] { return 0; });

    const RunStory story = session.Run(choice);

    EXPECT_EQ(story.count, static_cast<LONG>(expected.CountDuplicates()));
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

// An operation of the run: every second time one of its action phase.
LONG AnyOperation(std::mt19937& random, const CallCount& count, int round)
{
    const LONG first = round % 2 ? count.diskOperationsOfSearch : 1;
    return std::uniform_int_distribution<LONG>(first, count.diskOperations)(random);
}

TEST(KilledRuns, LeaveEveryMessageWhereItWasOrWhereTheActionPutsIt)
{
    const int rounds = IsLongForm() ? 200 : 24;
    std::mt19937 random(Seed());
    int died = 0;
    int inAction = 0;
    std::printf("seed %u\n", Seed());
    for (int round = 0; round < rounds && !HasFailure(); ++round)
    {
        KilledRun run{round % actionCount,
                      static_cast<int>(round % 4 < 2 ? Criteria::all : Criteria::constant)};
        run.operation = AnyOperation(random, CountCalls(run.Choice()), round / actionCount);
        SCOPED_TRACE("died at operation " + std::to_string(run.operation) + " of a run to " +
                     NameOf(run.Choice()));
        const WizardStore store(SmallWorldModel());
        const StoreVariable variable(std::filesystem::path(store.File().Path()).c_str());
        const ExpectedRun expected(store, run.Choice());

        died += RunAndDie(run) ? 1 : 0;

        EXPECT_TRUE(store.IsWhole());
        const std::optional<std::size_t> treated = CountTreated(store, expected);
        EXPECT_TRUE(treated) << "messages are lost, there twice or where nobody put them";
        inAction += treated > 0u && treated < expected.CountDuplicates() ? 1 : 0;
        ExpectTheSameRunEndsTheWork(store, run.Choice());
        EXPECT_TRUE(store.IsWhole());
    }
    EXPECT_GT(died, rounds / 2);
    EXPECT_GT(inAction, 0) << "no run died between its first and its last message";
    std::printf("%d runs, %d died, %d of them between their first and their last message\n", rounds, died,
                inAction);
}

// The process that is killed.
TEST(RunToBeKilled, DISABLED_DiesAtItsOperation)
{
    const char* planned = std::getenv("TQODR_KILLED_RUN");
    ASSERT_TRUE(planned);
    std::istringstream stream(planned);
    KilledRun run;
    stream >> run.action >> run.criteria >> run.operation;
    const FaultyProvider& provider = FaultyProvider::Get();
    provider.Plan({FaultPlace::diskOperation, FaultKind::death, S_OK, run.operation, FALSE});
    EngineSession session([] { return 0; });

    session.Run(run.Choice());
}
}    // namespace
