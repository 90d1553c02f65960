// A host that stays up for weeks: the wizard opened ten thousand times, and a hundred whole runs.
#include "tests/faults/Sweep.h"
#include "tests/life/Growth.h"
#include "tests/life/ProcessCounts.h"
#include "tests/life/SystemResidue.h"
#include "tests/ui/WizardFixture.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace
{
// What the system makes when it is first needed and keeps, in all: more comes to light the longer one looks.
// Committed memory comes and goes by whole stacks of threads, and under Wine each dialog leaves a little.
constexpr std::array<double, heldKinds> keptBySystem{4, 4, 4, 0, 40, 8 * 1024};

// The counts after each of the equal parts of many rounds.
class Series
{
public:
    // Of the heap's blocks, so many are not ours.
    void Take(int round, std::size_t blocksOfSystem)
    {
        std::array<double, heldKinds> counts = CountHeld();
        counts[static_cast<std::size_t>(Held::heapBlocks)] -= static_cast<double>(blocksOfSystem);
        std::printf("%6d", round);
        for (std::size_t kind = 0; kind < heldKinds; ++kind)
        {
            samples[kind].push_back(counts[kind]);
            std::printf(" %7.0f", counts[kind]);
        }
        std::printf("\n");
        std::fflush(stdout);
    }

    void ExpectFlat(int roundsBetween) const
    {
        std::printf("%-16s %10s %10s %16s %8s\n", "", "first", "last", "per 1000 rounds", "noise");
        for (std::size_t kind = 0; kind < heldKinds; ++kind)
        {
            const Growth growth = GrowthOf(samples[kind]);
            const char* name = NameOf(static_cast<Held>(kind));
            std::printf("%-16s %10.0f %10.0f %16.2f %8.2f\n", name, samples[kind].front(),
                        samples[kind].back(), growth.perSample * 1000 / roundsBetween, growth.noise);
            EXPECT_TRUE(IsFlat(growth, keptBySystem[kind])) << name << " grow";
        }
    }

private:
    std::array<std::vector<double>, heldKinds> samples;
};

class LongLife : public Wizard
{
protected:
    // Makes one round and yields the templates of the dialogs that it has shown.
    using Round = std::function<std::vector<int>(int number)>;

    // Makes the round so often, looks at what is held every few rounds, and expects it not to grow. The first
    // rounds do not count: much is made once.
    static void ExpectNoGrowth(int rounds, const Round& round)
    {
        const int between = std::max(1, rounds / 25);
        const int warmUp = std::max(6, rounds / 5);
        for (int i = 0; i < warmUp && !HasFailure(); ++i)
            round(i);
        const SystemResidue residue({IDD_DUPLICATE_REMOVER, IDD_DUPLICATE_SETTINGS, IDD_SELECT_FOLDER,
                                     IDD_PROCESS_PROGRESS, IDD_MESSAGE});
        Series series;
        std::size_t blocksOfSystem = 0;
        for (int i = 0; i < rounds && !HasFailure(); ++i)
        {
            blocksOfSystem += residue.Of(round(warmUp + i));
            if (i % between == 0)
                series.Take(i + 1, blocksOfSystem);
        }
        std::printf("%d rounds after %d uncounted ones\n", rounds, warmUp);
        if (!HasFailure())
            series.ExpectFlat(between);
    }

    static void ExpectNoObjectLeft(const std::optional<KeptServers>& servers)
    {
        ASSERT_TRUE(servers && servers->AreLoaded());
        EXPECT_TRUE(servers->AreIdle()) << "an object of a mail server is left";
    }

    void MakeRun(const RunChoice& choice)
    {
        const WizardStore fresh;
        const StoreVariable other(std::filesystem::path(fresh.File().Path()).c_str());
        const ExpectedRun expected(fresh, choice);
        std::optional<KeptServers> servers;

        UseWizard(
            [&](WizardUser& user)
            {
                user.WaitUntilLoaded();
                servers.emplace();
                Run(user, choice);
            });

        ExpectNoObjectLeft(servers);
        EXPECT_EQ(fresh.Messages(), expected.MessagesAfter());
    }
};

TEST_F(LongLife, OpensTheWizardOverAndOver)
{
    ExpectNoGrowth(IsLongForm() ? 10'000 : 200,
                   [](int)
                   {
                       std::optional<KeptServers> servers;
                       UseWizard(
                           [&](WizardUser& user)
                           {
                               user.WaitUntilLoaded();
                               servers.emplace();
                               user.PressEscape(Page::folders);
                           });
                       ExpectNoObjectLeft(servers);
                       return std::vector{IDD_DUPLICATE_REMOVER};
                   });
}

TEST_F(LongLife, MakesRunAfterRun)
{
    constexpr std::array actions{moveToDeletedItems, expire, copy, move, flag, deletePermanently};
    ExpectNoGrowth(IsLongForm() ? 100 : 10,
                   [&](int number)
                   {
                       RunChoice choice =
                           AllFolders(actions.at(static_cast<std::size_t>(number) % actions.size()));
                       choice.senderName = choice.recipientName = choice.internetHeader = choice.attachments =
                           choice.sendTime = number % 2 == 0;
                       MakeRun(choice);
                       std::vector<int> shown{IDD_DUPLICATE_REMOVER, IDD_DUPLICATE_SETTINGS,
                                              IDD_PROCESS_PROGRESS, IDD_MESSAGE};
                       if (NeedsDestination(choice))
                           shown.push_back(IDD_SELECT_FOLDER);
                       return shown;
                   });
}
}    // namespace
