#include "tests/faults/Promises.h"

#include "tests/faults/FaultyProvider.h"
#include "tests/localmapi/Sandbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <numeric>
#include <set>

namespace
{
bool IsAsItWas(const WorldMessage& before, const std::vector<WorldMessage>& after)
{
    return std::ranges::find(after, before) != after.end();
}

// A message as the action leaves it; for a copy, the copy.
bool IsTreated(const WorldMessage& before, const WorldMessage& after, const RunChoice& choice)
{
    WorldMessage expected = before;
    switch (choice.action)
    {
    case actionDeleteToFolder:
        expected.folder = deletedItemsId;
        break;
    case actionExpire:
        expected.expired = true;
        break;
    case actionCopy:
        expected.id = after.id;
        expected.folder = choice.destination;
        return after == expected && after.id != before.id;
    case actionMove:
        expected.folder = choice.destination;
        break;
    case actionFlag:
        expected.flagged = true;
        break;
    default:
        return false;
    }
    return after == expected;
}

// What became of the world's messages.
class Aftermath
{
public:
    Aftermath(const std::vector<WorldMessage>& before, const std::vector<WorldMessage>& after,
              const RunChoice& choice)
        : before(before),
          choice(choice)
    {
        std::size_t accounted = 0;
        for (const WorldMessage& message : before)
            accounted += Account(message, after);
        EXPECT_EQ(accounted, after.size()) << "the store holds what nobody put there";
    }

    const std::set<std::int64_t>& Treated() const { return treated; }

    // Of each group one message stays as it was.
    void ExpectEveryGroupKept() const
    {
        std::map<std::string, int> untouched;
        for (const WorldMessage& message : before)
            untouched[GroupOf(message, choice)] += treated.contains(message.id) ? 0 : 1;
        for (const auto& [group, count] : untouched)
            EXPECT_GT(count, 0) << "nothing is left of group " << group;
    }

private:
    // The number of messages in the store that come from this one.
    std::size_t Account(const WorldMessage& message, const std::vector<WorldMessage>& after)
    {
        const bool asItWas = IsAsItWas(message, after);
        const auto results = static_cast<std::size_t>(std::ranges::count_if(
            after, [&](const WorldMessage& other) { return IsTreated(message, other, choice); }));
        const bool deleted = choice.action == actionDeleteForGood && !asItWas;
        if (results > 0 || deleted)
            treated.insert(message.id);
        const std::size_t copies = choice.action == actionCopy ? results : 0;
        EXPECT_EQ((asItWas ? 1u : 0u) + results - copies + (deleted ? 1u : 0u), 1u)
            << message.name << " is lost or there twice";
        return (asItWas ? 1 : 0) + results;
    }

    const std::vector<WorldMessage>& before;
    const RunChoice choice;
    std::set<std::int64_t> treated;
};

LONG SumOf(const std::vector<ResultRow>& rows)
{
    return std::accumulate(rows.begin(), rows.end(), LONG{0},
                           [](LONG sum, const ResultRow& row) { return sum + row.count; });
}

std::string ReportLines(const RunStory& story)
{
    std::string lines = "Talmore Quorvex Outlook Duplicate Remover\r\n";
    std::wstring previous;
    int item = 0;
    for (const ResultRow& row : story.rows)
    {
        if (row.subject != previous)
            lines += "\r\nItem Number: " + std::to_string(++item) +
                     "\r\nSubject: " + std::string(row.subject.begin(), row.subject.end()) + "\r\n";
        previous = row.subject;
        lines += "Folder Name: " + std::string(row.folderName.begin(), row.folderName.end()) +
                 "    Duplicate Count: " + std::to_string(row.count) + "\r\n";
    }
    return lines;
}

void ExpectToldWhatHappened(const RunStory& story, const Aftermath& aftermath, const Mishap& mishap)
{
    const std::set<std::int64_t> found(story.duplicates.begin(), story.duplicates.end());
    EXPECT_TRUE(std::ranges::includes(found, aftermath.Treated())) << "a message was treated unfound";
    EXPECT_EQ(story.count, SumOf(story.rows));
    EXPECT_EQ(story.count, story.rows.empty() ? 0 : story.rows.back().runningTotal);
    EXPECT_LE(story.count, static_cast<LONG>(story.duplicates.size()));
    if (mishap.faults() == 0)
    {
        EXPECT_EQ(story.count, static_cast<LONG>(story.duplicates.size()));
    }
    EXPECT_EQ(story.report, story.rows.empty() ? "" : ReportLines(story));
}

void ExpectAllFoundIsTreated(const RunStory& story, const Aftermath& aftermath, const Mishap& mishap)
{
    if (mishap.lasts || story.stopped)
        return;
    const std::set<std::int64_t> found(story.duplicates.begin(), story.duplicates.end());
    std::vector<std::int64_t> left;
    std::ranges::set_difference(found, aftermath.Treated(), std::back_inserter(left));
    std::erase(left, 0);    // an answer of the wrong type names no message
    const bool hitInAction = mishap.faults() > story.faultsInSearch;
    EXPECT_LE(left.size(), hitInAction ? 1u : 0u) << "duplicates were found and not treated";
}

void ExpectStoppedInTime(const RunStory& story, const Aftermath& aftermath)
{
    if (story.stopped && story.faultsInSearch > 0)
    {
        EXPECT_THAT(aftermath.Treated(), testing::IsEmpty()) << "a stopped search changes nothing";
    }
}

class Trial
{
public:
    Trial(const RunChoice& choice, const Mishap& mishap) : choice(choice), mishap(mishap) {}

    LONG Run()
    {
        LONG happened = 0;
        {
            EngineSession session(mishap.faults, mishap.wrap);
            if (mishap.arrange)
                mishap.arrange(session);
            RunWithMishap(session);
            happened = mishap.faults();
            if (mishap.lift)
                mishap.lift();
            if (!testing::Test::HasFailure())
                RunAgain(session);
        }
        EXPECT_TRUE(store.IsWhole());
        ExpectNothingLeftBehind();
        return happened;
    }

private:
    void RunWithMishap(EngineSession& session)
    {
        const std::vector<WorldMessage> before = ReadWorld(store.File());
        const RunStory story = session.Run(choice);
        const Aftermath aftermath(before, ReadWorld(store.File()), choice);
        if (choice.action != actionCopy)
            aftermath.ExpectEveryGroupKept();
        if (!story.scanned)
        {
            EXPECT_THAT(aftermath.Treated(), testing::IsEmpty());
        }
        ExpectToldWhatHappened(story, aftermath, mishap);
        ExpectAllFoundIsTreated(story, aftermath, mishap);
        ExpectStoppedInTime(story, aftermath);
    }

    void RunAgain(EngineSession& session)
    {
        const ExpectedRun expected(store, choice);
        const RunStory story = session.Run(choice);
        EXPECT_TRUE(story.scanned) << "the session is of no use any more";
        EXPECT_EQ(story.count, static_cast<LONG>(expected.CountDuplicates()));
        EXPECT_EQ(store.Messages(), expected.MessagesAfter()) << "the same run does not end the work";
    }

    void ExpectNothingLeftBehind()
    {
        const FaultReport report = FaultyProvider::Get().Report();
        EXPECT_EQ(report.liveObjects, 0) << "MAPI objects are left";
        EXPECT_EQ(report.openFiles, 0) << "the store's files are left open";
        const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(
            ::GetProcAddress(::GetModuleHandleW(L"QuorvexDll.dll"), "DllCanUnloadNow")));
        EXPECT_EQ(canUnload(), S_OK) << "automation objects are left";
    }

    const RunChoice& choice;
    const Mishap& mishap;
    const WizardStore store{SmallWorldModel()};
    const StoreVariable variable{std::filesystem::path(store.File().Path()).c_str()};
};
}    // namespace

LONG ExpectPromisesKept(const RunChoice& choice, const Mishap& mishap)
{
    FaultyProvider::Get();
    const std::string what = mishap.name + " in a run to " + NameOf(choice);
    SCOPED_TRACE(what);
    return Trial(choice, mishap).Run();
}

CallCount CountCalls(const RunChoice& choice)
{
    const FaultyProvider& provider = FaultyProvider::Get();
    const WizardStore store(SmallWorldModel());
    const StoreVariable variable(std::filesystem::path(store.File().Path()).c_str());
    provider.Plan({});
    CallCount count;
    {
        EngineSession session([&] { return provider.Report().diskOperations; });
        count.diskOperationsOfSearch = session.Run(choice).faultsInSearch;
    }
    count.mapiCalls = provider.Report().mapiCalls;
    count.diskOperations = provider.Report().diskOperations;
    return count;
}
