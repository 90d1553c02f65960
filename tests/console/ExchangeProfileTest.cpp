#include "console/MailStore.h"
#include "engine/FolderTree.h"
#include "engine/ScanDriver.h"
#include "engine/ScanSettings.h"
#include "tests/console/EndToEnd.h"
#include "tests/engine/Watchers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace
{
// A profile with the Exchange service: its tables show short-term entry ids, and the long-term ones in a
// column of their own. A message's own id is the long-term one.
class ExchangeProfile : public EndToEnd
{
protected:
    ExchangeProfile() { AddMinutes(); }

    void NameService(const std::string& name) const
    {
        store.Query("UPDATE setting SET value = '" + name + "' WHERE name = 'service_name'");
    }

    // The ids by which the duplicates are known after a search.
    std::vector<std::wstring> FindDuplicates()
    {
        ResetSettings(state);
        MarkSelectedFolders(state, tree);
        state.progressDialog = &view;
        RunDuplicateScan(state, state.folderRoot);
        return {state.duplicateIds.begin(), state.duplicateIds.end()};
    }

    // How ids begin: the flags that tell the two kinds apart.
    const std::wstring shortTerm = L"80000000";
    const std::wstring longTerm = L"00000000";

    const ComApartment apartment;
    ScanState state;
    MapiHelper helper;
    ConsoleFolderTree tree;
    RecordingProgressView view;
};
}    // namespace

TEST_F(ExchangeProfile, IsSearchedByLongTermIds)
{
    NameService("MSEMS");
    LoadFolders(state, tree);
    LearnProfileKind(state, helper);

    const std::vector<std::wstring> ids = FindDuplicates();

    EXPECT_THAT(ids, AllOf(SizeIs(2), Each(StartsWith(longTerm))));
}

// What the test above must tell apart.
TEST_F(ExchangeProfile, HasShortTermIdsForWhoDoesNotKnowIt)
{
    NameService("MSEMS");
    LoadFolders(state, tree);

    const std::vector<std::wstring> ids = FindDuplicates();

    EXPECT_THAT(ids, AllOf(Not(IsEmpty()), Each(StartsWith(shortTerm))));
}

TEST_F(ExchangeProfile, IsNoneWhenTheServiceHasAnotherName)
{
    NameService("msems");
    LoadFolders(state, tree);

    LearnProfileKind(state, helper);

    EXPECT_FALSE(state.exchangeProfile);
    EXPECT_NE(helper.defaultStore, nullptr);
}

TEST_F(ExchangeProfile, HasTheSameDuplicatesMoved)
{
    const RunResult without = RunToEnd({L"scan"});
    NameService("MSEMS");

    const RunResult report = RunToEnd({L"scan"});
    const RunResult move = RunToEnd({L"scan", L"--action", L"move", L"--to", L"Deleted Items"});

    EXPECT_EQ(report.out, without.out);
    EXPECT_EQ(move.exitCode, 0u);
    EXPECT_EQ(move.errors, "");
    EXPECT_THAT(store.ListMessages(), ElementsAre("Deleted Items/Minutes", "Deleted Items/Minutes",
                                                  "Inbox/Alone", "Inbox/Minutes"));
    EXPECT_EQ(store.Query("SELECT id FROM message WHERE folder_id = 3 ORDER BY id"),
              (std::vector<std::string>{"1", "2"}));
}
