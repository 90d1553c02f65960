#include "engine/LocalTime.h"
#include "tests/engine/ScanFixture.h"

namespace
{
using Lines = std::vector<std::string>;

std::string Fetch(const std::wstring& id)
{
    return "Session 9 method(BSTR " + std::string(id.begin(), id.end()) + ", BSTR 5354, I4 16)";
}

// One kept message and one duplicate of it in the Inbox.
class ScanAction : public ScanFixture
{
protected:
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    std::wstring kept = inbox.AddMessage();
    std::wstring duplicate = inbox.AddMessage();
};

TEST_F(ScanAction, FlagsTheDuplicateAndSavesIt)
{
    state.actionFlag = 1;

    Run();

    EXPECT_EQ(store.log.lines, (Lines{Fetch(duplicate), "Item 25 put(I4 2)",
                                      "Item 24 put(BSTR Duplicate Mail)", "Item 6 method()"}));
    EXPECT_EQ(store.Find(duplicate)->flagStatus, 2);
    EXPECT_EQ(store.Find(kept)->flagStatus, 0);
}

TEST_F(ScanAction, ExpiresTheDuplicateFiveMinutesAgoInLocalTimeAndSavesIt)
{
    state.actionExpire = 1;
    const UnixSeconds before = CurrentUnixSeconds();

    Run();

    const UnixSeconds after = CurrentUnixSeconds();
    EXPECT_GE(store.Find(duplicate)->expiry, ToLocalDate(before - 300, TimeZone()).value);
    EXPECT_LE(store.Find(duplicate)->expiry, ToLocalDate(after - 300, TimeZone()).value);
    EXPECT_EQ(store.Find(duplicate)->saves, 1);
    ASSERT_EQ(store.log.lines.size(), 3u);
    EXPECT_EQ(store.log.lines[0], Fetch(duplicate));
    EXPECT_TRUE(store.log.lines[1].starts_with("Item 21 put(DATE "));
    EXPECT_EQ(store.log.lines[2], "Item 6 method()");
}

TEST_F(ScanAction, CopiesTheDuplicateWithoutSavingIt)
{
    state.actionCopy = 1;
    state.destFolder = store.MakeFolder(archive);

    Run();

    EXPECT_EQ(store.log.lines, (Lines{Fetch(duplicate), "Item 5 method(DISPATCH)"}));
    EXPECT_EQ(archive.messages.size(), 1u);
    EXPECT_EQ(store.FolderOf(duplicate), &inbox);
}

TEST_F(ScanAction, MovesTheDuplicateWithoutSavingItAndLetsTheMovedItemGo)
{
    state.actionMove = 1;
    state.destFolder = store.MakeFolder(archive);

    Run();

    EXPECT_EQ(store.log.lines, (Lines{Fetch(duplicate), "Item 68 method(DISPATCH)"}));
    EXPECT_EQ(store.FolderOf(duplicate), &archive);
    EXPECT_EQ(store.FolderOf(kept), &inbox);
}

TEST_F(ScanAction, DeletesTheDuplicateIntoDeletedItems)
{
    state.actionDelete = 1;

    Run();

    EXPECT_EQ(store.log.lines, (Lines{Fetch(duplicate), "Item 55 method(I4 1)"}));
    EXPECT_EQ(store.FolderOf(duplicate), &store.deletedItems);
}

TEST_F(ScanAction, DeletesTheDuplicateForGood)
{
    state.actionDeletePermanently = 1;

    Run();

    EXPECT_EQ(store.log.lines, (Lines{Fetch(duplicate), "Item 55 method(I4 0)"}));
    EXPECT_EQ(store.FolderOf(duplicate), nullptr);
    EXPECT_EQ(store.FolderOf(kept), &inbox);
}

TEST_F(ScanAction, FetchesTheDuplicateAndChangesNothingWithoutAnAction)
{
    Run();

    EXPECT_EQ(store.log.lines, Lines{Fetch(duplicate)});
    EXPECT_EQ(store.FolderOf(duplicate), &inbox);
}

TEST_F(ScanAction, AppliesOnlyTheFirstOfSeveralActions)
{
    state.actionFlag = state.actionExpire = state.actionCopy = 1;
    state.actionMove = state.actionDelete = state.actionDeletePermanently = 1;

    Run();

    EXPECT_EQ(store.Find(duplicate)->flagStatus, 2);
    EXPECT_EQ(store.log.lines.size(), 4u);
}

TEST_F(ScanAction, MakesNoCallWithoutDuplicates)
{
    inbox.messages.pop_back();
    state.actionDelete = 1;

    Run();

    EXPECT_TRUE(store.log.lines.empty());
}

TEST_F(ScanAction, ChangesNothingWhenTheSearchWasStopped)
{
    state.actionDelete = 1;
    RunSearch();
    state.stopRequested = 1;
    store.log.lines.clear();

    ApplyDuplicateAction(state);

    EXPECT_TRUE(store.log.lines.empty());
    EXPECT_EQ(store.FolderOf(duplicate), &inbox);
    EXPECT_EQ(state.duplicateIds.GetCount(), 1u);
}

TEST_F(ScanAction, EndsAfterTheItemInHandWhenStopped)
{
    const std::wstring next = inbox.AddMessage();
    state.actionDelete = 1;
    RunSearch();
    store.log.onCall = [this](const std::string&) { state.stopRequested = 1; };

    ApplyDuplicateAction(state);

    EXPECT_EQ(store.FolderOf(duplicate), &store.deletedItems);
    EXPECT_EQ(store.FolderOf(next), &inbox);
}

TEST_F(ScanAction, GoesOnWithTheNextDuplicateWhenOneCannotBeFetched)
{
    const std::wstring next = inbox.AddMessage();
    state.actionDelete = 1;
    RunSearch();
    store.log.lines.clear();
    store.log.failAt = 1;

    ApplyDuplicateAction(state);

    EXPECT_EQ(store.FolderOf(duplicate), &inbox);
    EXPECT_EQ(store.FolderOf(next), &store.deletedItems);
    EXPECT_EQ(state.duplicateCount, 2);
}

TEST_F(ScanAction, GoesOnWithTheNextDuplicateWhenOneIsGone)
{
    const std::wstring next = inbox.AddMessage();
    state.actionDelete = 1;
    RunSearch();
    std::erase_if(inbox.messages, [this](const auto& message) { return message->id == duplicate; });

    ApplyDuplicateAction(state);

    EXPECT_EQ(store.FolderOf(next), &store.deletedItems);
}

TEST_F(ScanAction, SavesNothingWhenTheFlagIsRefused)
{
    state.actionFlag = 1;
    RunSearch();
    store.log.lines.clear();
    store.log.failAt = 2;

    ApplyDuplicateAction(state);

    EXPECT_EQ(store.Find(duplicate)->saves, 0);
    EXPECT_EQ(store.log.lines.size(), 2u);
}
}    // namespace
