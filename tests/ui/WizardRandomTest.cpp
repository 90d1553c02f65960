// Random walks through the wizard. TQODR_WALK_SEED=N runs that one again.
#include "tests/ui/WizardFixture.h"
#include "tests/ui/WizardWalker.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

namespace
{
constexpr int mostMoves = 30;

std::vector<std::uint32_t> Seeds()
{
    if (const char* seed = std::getenv("TQODR_WALK_SEED"))
        return {static_cast<std::uint32_t>(std::strtoul(seed, nullptr, 10))};
    std::vector<std::uint32_t> seeds(50);
    std::iota(seeds.begin(), seeds.end(), 1u);
    return seeds;
}

class RandomWalk : public Wizard, public testing::WithParamInterface<std::uint32_t>
{
protected:
    // Whether the store holds what a run that was stopped may leave: the first of the duplicates are treated.
    static bool IsPartOf(const ExpectedRun& expected, const std::vector<std::string>& messages)
    {
        for (std::size_t treated = 0; treated <= expected.CountDuplicates(); ++treated)
            if (expected.MessagesAfter(treated) == messages)
                return true;
        return false;
    }
};

TEST_P(RandomWalk, LosesNoMessageAndLeavesNothingBehind)
{
    std::printf("seed %u\n", GetParam());
    const WizardStore before;
    WizardWalker walker(GetParam(), store, folder.Path());

    const WizardRun run = Use([&](WizardUser& user) { walker.Walk(user, mostMoves); });

    const std::string walked = "seed " + std::to_string(GetParam()) + ":\n" + run.moves;
    if (!walker.Run())
    {
        EXPECT_EQ(store.Messages(), before.Messages()) << walked;
        return;
    }
    const ExpectedRun expected(before, *walker.Run());
    if (walker.IsStopped())
        EXPECT_TRUE(IsPartOf(expected, store.Messages())) << walked;
    else
    {
        EXPECT_EQ(store.Messages(), expected.MessagesAfter()) << walked;
        EXPECT_TRUE(walker.EndMessage().starts_with(L"Total duplicates items: " +
                                                    std::to_wstring(expected.CountDuplicates()) + L"\n"))
            << walked;
    }
}

INSTANTIATE_TEST_SUITE_P(Seed, RandomWalk, testing::ValuesIn(Seeds()), testing::PrintToStringParamName());
}    // namespace
