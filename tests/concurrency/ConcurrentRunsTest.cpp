// Two sessions of one process, each with a thread and a run of its own, over one store file.
#include "tests/concurrency/Lockstep.h"
#include "tests/faults/EngineSession.h"
#include "tests/faults/SmallWorld.h"
#include "tests/localmapi/Sandbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace
{
// A hundred more messages like A2, so that both runs treat messages for a while.
constexpr char manyMore[] = R"(
BEGIN;
CREATE TEMP TABLE more AS
    WITH RECURSIVE number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM number WHERE n < 100)
    SELECT n, n + 1000 AS id, (SELECT message_id FROM message_property WHERE tag = 0x1035001F AND value = 'A2') AS model
    FROM number;
INSERT INTO message (id, folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags, message_size)
SELECT more.id, CASE n % 2 WHEN 0 THEN 3 ELSE 5 END, message_class, subject, sender_name, sender_address_type,
       sender_address, display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags,
       message_size
FROM more JOIN message m ON m.id = model;
INSERT INTO message_property (message_id, tag, value)
SELECT more.id, tag, CASE tag WHEN 0x1035001F THEN value || '-' || n ELSE value END
FROM more JOIN message_property ON message_id = model;
INSERT INTO message_text (message_id, headers, body)
SELECT more.id, headers, body FROM more JOIN message_text ON message_id = model;
INSERT INTO recipient (message_id, row_id, type, name, address_type, address)
SELECT more.id, row_id, type, name, address_type, address FROM more JOIN recipient ON message_id = model;
INSERT INTO attachment (message_id, number, method, file_name, display_name, size)
SELECT more.id, number, method, file_name, display_name, size FROM more JOIN attachment ON message_id = model;
INSERT INTO attachment_data (message_id, number, data)
SELECT more.id, number, data FROM more JOIN attachment_data ON message_id = model;
COMMIT;
)";

// How often what both runs have made of a duplicate may lie in the store, by folder, and its marks.
struct Fate
{
    std::vector<std::vector<std::int64_t>> folders;    // those of all its copies, in order; one of these
    bool flagged = false;
    bool expired = false;
};

struct Pair
{
    const char* name;
    int first;
    int second;
    Fate fate;
    bool staysWhereItWas = false;    // one of the copies, in a folder that is not named
};

void PrintTo(const Pair& pair, std::ostream* stream)
{
    *stream << pair.name;
}

using ByName = std::map<std::string, std::vector<WorldMessage>>;

ByName NamesOf(const std::vector<WorldMessage>& messages)
{
    ByName names;
    for (const WorldMessage& message : messages)
        names[message.name].push_back(message);
    return names;
}

class TwoRuns : public testing::Test
{
protected:
    TwoRuns() { store.File().Run(manyMore); }
    ~TwoRuns() override { EXPECT_TRUE(store.IsWhole()); }

    // Both search in lockstep, so that they come to their actions together.
    std::array<RunStory, 2> RunBoth(int first, int second)
    {
        Lockstep lockstep(2);
        std::array<RunStory, 2> stories;
        const auto run = [&](int action, RunStory& story)
        {
            {
                EngineSession session(
                    [&]
                    {
                        lockstep.Step();
                        return 0L;
                    });
                story = session.Run(SmallRun(action, Criteria::all));
            }
            lockstep.Leave();
        };
        std::thread other(run, second, std::ref(stories[1]));
        run(first, stories[0]);
        other.join();
        return stories;
    }

    static void ExpectFate(const Pair& pair, const WorldMessage& before,
                           const std::vector<WorldMessage>& after)
    {
        std::vector<std::int64_t> folders;
        for (const WorldMessage& message : after)
        {
            folders.push_back(message.folder);
            EXPECT_EQ(message.content, before.content);
            EXPECT_EQ(message.flagged, pair.fate.flagged) << message.name;
            EXPECT_EQ(message.expired, pair.fate.expired) << message.name;
        }
        std::ranges::sort(folders);
        auto allowed = pair.fate.folders;
        if (pair.staysWhereItWas)
            for (auto& one : allowed)
                one.insert(std::ranges::upper_bound(one, before.folder), before.folder);
        EXPECT_NE(std::ranges::find(allowed, folders), allowed.end())
            << before.name << " lies in " << testing::PrintToString(folders);
    }

    const WizardStore store{SmallWorldModel()};
    const StoreVariable variable{std::filesystem::path(store.File().Path()).c_str()};
};

class TwoRunsOf : public TwoRuns, public testing::WithParamInterface<Pair>
{
};

TEST_P(TwoRunsOf, TreatEachDuplicateAsBothShouldAndNothingElse)
{
    const Pair& pair = GetParam();
    const std::vector<WorldMessage> before = ReadWorld(store.File());
    const ExpectedRun expected(store, SmallRun(pair.first, Criteria::all));

    const std::array<RunStory, 2> stories = RunBoth(pair.first, pair.second);

    EXPECT_EQ(stories[0].count, static_cast<LONG>(expected.CountDuplicates()));
    EXPECT_EQ(stories[1].count, stories[0].count);
    EXPECT_EQ(stories[1].report, stories[0].report);
    ByName after = NamesOf(ReadWorld(store.File()));
    for (const WorldMessage& message : before)
    {
        if (std::ranges::find(stories[0].duplicates, message.id) != stories[0].duplicates.end())
            ExpectFate(pair, message, after[message.name]);
        else
            EXPECT_EQ(after[message.name], std::vector{message}) << "that is no duplicate";
        after.erase(message.name);
    }
    EXPECT_TRUE(after.empty()) << "the store holds what nobody put there";
}

const std::vector<std::int64_t> nowhere{};
INSTANTIATE_TEST_SUITE_P(
    ByActions, TwoRunsOf,
    testing::Values(Pair{"BothMove", actionMove, actionMove, {{{keptId}}}},
                    Pair{"MoveAndDelete", actionMove, actionDeleteToFolder, {{{keptId}, {deletedItemsId}}}},
                    Pair{"MoveAndDeleteForGood", actionMove, actionDeleteForGood, {{{keptId}, nowhere}}},
                    Pair{"BothDeleteForGood", actionDeleteForGood, actionDeleteForGood, {{nowhere}}},
                    Pair{"BothCopy", actionCopy, actionCopy, {{{keptId, keptId}}}, true},
                    Pair{"FlagAndExpire", actionFlag, actionExpire, {{nowhere}, true, true}, true},
                    Pair{"FlagAndMove", actionFlag, actionMove, {{{keptId}}, true}}),
    [](const auto& pair) { return std::string(pair.param.name); });

TEST_F(TwoRuns, AreNeverSeenByAReaderWithAMessageTwiceOrNowhere)
{
    constexpr char names[] = "SELECT value FROM message_property JOIN message ON id = message_id WHERE tag = "
                             "0x1035001F ORDER BY 1";
    const std::vector<std::string> before = ReadLines(store.File(), names);
    std::atomic<bool> over = false;
    std::atomic<bool> looked = false;
    int looks = 0;
    std::thread reader(
        [&]
        {
            do
            {
                EXPECT_EQ(ReadLines(store.File(), names), before);
                ++looks;
                looked = true;
                looked.notify_one();
            } while (!over && !HasFailure());
        });
    looked.wait(false);

    RunBoth(actionMove, actionDeleteToFolder);

    over = true;
    reader.join();
    std::printf("%d looks\n", looks);
    EXPECT_GT(looks, 1);
}
}    // namespace
