#include "tests/engine/ScanFixture.h"

#include <windows.h>

#include <oleauto.h>

#include <cmath>

namespace
{
using Ids = std::vector<std::wstring>;
using Rows = std::vector<ResultRow>;

DATE DateOf(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second)
{
    SYSTEMTIME calendar{year, month, 0, day, hour, minute, second, 0};
    DATE date = 0;
    ::SystemTimeToVariantTime(&calendar, &date);
    return date;
}

class ScanDriver : public ScanFixture
{
protected:
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
};

TEST_F(ScanDriver, KeepsTheFirstOfTwoIdenticalMessagesInOneFolder)
{
    inbox.AddMessage();
    const std::wstring later = inbox.AddMessage();

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{later});
    EXPECT_EQ(state.duplicateCount, 1);
    EXPECT_EQ(progress.rows, (Rows{{L"Inbox", L"Minutes", 1, 1}}));
}

TEST_F(ScanDriver, KeepsTheCopyInTheFolderThatComesFirstAndNamesTheOtherInTheRow)
{
    inbox.AddMessage();
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    const std::wstring copy = archive.AddMessage();

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{copy});
    EXPECT_EQ(progress.rows, (Rows{{L"Archive", L"Minutes", 1, 1}}));
}

TEST_F(ScanDriver, ReportsOneRowForEachFolderWithDuplicatesOfOneMessage)
{
    for (int i = 0; i < 3; ++i)
        inbox.AddMessage();
    store.root.AddFolder(L"Archive").AddMessage();

    RunSearch();

    EXPECT_EQ(progress.rows, (Rows{{L"Inbox", L"Minutes", 2, 2}, {L"Archive", L"Minutes", 1, 3}}));
}

TEST_F(ScanDriver, StartsNoSearchForAnItemThatIsAlreadyADuplicate)
{
    inbox.AddMessage();
    inbox.AddMessage();

    RunSearch();

    EXPECT_EQ(std::ranges::count(store.log.lines, "Items 13 get()"), 1);
    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 0 get()"), 1);
}

TEST_F(ScanDriver, MakesTheCallsOfAWholeSearchInOrder)
{
    inbox.AddMessage({.recipients = {{1, L"Bob"}, {2, L"Carl"}}, .attachments = {L"a.pdf"}});
    state.useRecipientName = state.useAttachments = state.useSendTime = 1;
    LoadTree();
    state.progressDialog = &progress;

    RunDuplicateScan(state, state.folderRoot);

    const std::vector<std::string> visit{"Folder 0 get()", "Folder 17 get()", "Items 1 get()",
                                         "Folder 22 get()"};
    const std::vector<std::string> root{"Folder 0 get()", "Folder 17 get()", "Items 1 get()"};
    const std::vector<std::string> item{
        "Items 9 method(I4 1)",    "Item 201 get()",       "Item 0 get()",           "Item 11 get()",
        "Item 50 get()",           "Item 52 get()",        "Item 77 get()",          "Recipients 80 get()",
        "Recipients 0 get(I4 1)",  "Recipient 3093 get()", "Recipient 7 get()",      "Recipients 0 get(I4 2)",
        "Recipient 3093 get()",    "Recipient 7 get()",    "Item 73 get()",          "Attachments 80 get()",
        "Attachments 0 get(I4 1)", "Attachment 103 get()", "Item 3 get(I4 8192030)", "Item 57 get()"};
    std::vector<std::string> expected = root;
    for (const auto& part : {visit, item, visit})
        expected.insert(expected.end(), part.begin(), part.end());
    expected.push_back("Items 13 get()");
    ASSERT_GE(store.log.lines.size(), expected.size());
    EXPECT_EQ(
        std::vector(store.log.lines.begin(), store.log.lines.begin() + static_cast<int>(expected.size())),
        expected);
    EXPECT_TRUE(store.log.refused.empty());
}

TEST_F(ScanDriver, ReadsOnlyWhatIsComparedButAlwaysTheTransportHeaders)
{
    inbox.AddMessage({.recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});

    RunSearch();

    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 52 get()"), 1);
    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 3 get(I4 8192030)"), 1);
    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 77 get()"), 0);
    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 73 get()"), 0);
    EXPECT_EQ(std::ranges::count(store.log.lines, "Item 57 get()"), 0);
}

TEST_F(ScanDriver, NeitherScansNorStepsAFolderThatHoldsNoMail)
{
    FakeFolder& calendar = store.root.AddFolder(L"Calendar", 1);
    calendar.AddMessage();
    calendar.AddMessage();

    RunSearch();

    EXPECT_TRUE(FoundIds().empty());
    EXPECT_EQ(progress.steps, 0);
}

TEST_F(ScanDriver, PassesOverAFolderThatIsNotSelected)
{
    inbox.AddMessage();
    store.root.AddFolder(L"Archive").AddMessage();
    LoadTree();
    state.progressDialog = &progress;
    state.folders[2].selected = 0;

    RunDuplicateScan(state, state.folderRoot);

    EXPECT_TRUE(FoundIds().empty());
    EXPECT_EQ(progress.steps, 1);
}

TEST_F(ScanDriver, TakesAMissingItemCollectionForAnEmptyFolder)
{
    FakeFolder& odd = store.root.AddFolder(L"Odd");
    odd.AddMessage();
    store.withoutItems.push_back(&odd);
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    archive.AddMessage();
    const std::wstring duplicate = archive.AddMessage();

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{duplicate});
}

TEST_F(ScanDriver, StepsOnceForEachSearchedFolderOfEachKeptItem)
{
    inbox.AddMessage({.subject = L"One"});
    inbox.AddMessage({.subject = L"Two"});
    store.root.AddFolder(L"Archive").AddMessage({.subject = L"Three"});
    store.root.AddFolder(L"Empty");

    RunSearch();

    EXPECT_EQ(progress.steps, 2 + 2 + 1);
}

TEST_F(ScanDriver, RecordsAnItemTwiceThatDuplicatesTwoKeptOnes)
{
    // The upper-cased attachment name keeps nothing apart: content conditions ignore the case, so the two
    // kept items differ only in the recipients that the third has both of.
    inbox.AddMessage({.attachments = {L"a.pdf"}});
    inbox.AddMessage({.attachments = {L"b.pdf"}});
    const std::wstring both = inbox.AddMessage({.attachments = {L"a.pdf", L"b.pdf"}});
    state.useAttachments = 1;

    RunSearch();

    EXPECT_EQ(FoundIds(), (Ids{both, both}));
    EXPECT_EQ(state.duplicateCount, 2);
}

TEST_F(ScanDriver, PassesOverTheFirstMatchEvenWhenThatIsAnotherMessage)
{
    // The second names fewer attachments, so its search meets the first before itself.
    const std::wstring first = inbox.AddMessage({.attachments = {L"a.pdf", L"b.pdf"}});
    const std::wstring fewer = inbox.AddMessage({.attachments = {L"a.pdf"}});
    state.useAttachments = 1;

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{fewer});
}

TEST_F(ScanDriver, ForgetsTheDuplicatesOfAnEarlierRun)
{
    inbox.AddMessage();
    inbox.AddMessage();
    RunSearch();
    const Ids first = FoundIds();

    RunDuplicateScan(state, state.folderRoot);

    EXPECT_EQ(FoundIds(), first);
}

TEST_F(ScanDriver, DoesNothingAtAllWithoutFolders)
{
    state.duplicateIds.Append(L"0A");

    RunDuplicateScan(state, CFolder());

    EXPECT_EQ(FoundIds(), Ids{L"0A"});
}

TEST_F(ScanDriver, SortsRecipientsByTypeAndIgnoresOtherTypes)
{
    inbox.AddMessage({.recipients = {{2, L"Carl"}, {1, L"Bob"}, {0, L"Ann"}, {3, L"Eve"}, {1, L"Dora"}}});
    state.useRecipientName = 1;

    RunSearch();

    EXPECT_EQ(state.toNames, (Ids{L"Bob", L"Dora"}));
    EXPECT_EQ(state.ccNames, Ids{L"Carl"});
    EXPECT_EQ(state.bccNames, Ids{L"Eve"});
}

TEST_F(ScanDriver, EmptiesTheNamesOfThePreviousItem)
{
    inbox.AddMessage({.subject = L"One", .recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});
    inbox.AddMessage({.subject = L"Two"});
    state.useRecipientName = state.useAttachments = 1;

    RunSearch();

    EXPECT_TRUE(state.toNames.empty());
    EXPECT_TRUE(state.attachmentNames.empty());
}

TEST_F(ScanDriver, TakesMessagesForTheSameFromFiveSecondsEarlierToJustUnderFiveLater)
{
    inbox.AddMessage({.sent = DateOf(2024, 6, 12, 12, 0, 0)});
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    const std::wstring early = archive.AddMessage({.sent = DateOf(2024, 6, 12, 11, 59, 55)});
    const std::wstring late = archive.AddMessage({.sent = DateOf(2024, 6, 12, 12, 0, 4)});
    // In folders of their own, where their own searches meet nothing else.
    store.root.AddFolder(L"Before").AddMessage({.sent = DateOf(2024, 6, 12, 11, 59, 54)});
    store.root.AddFolder(L"Behind").AddMessage({.sent = DateOf(2024, 6, 12, 12, 0, 5)});
    state.useSendTime = 1;

    RunSearch();

    EXPECT_EQ(FoundIds(), (Ids{early, late}));
}

TEST_F(ScanDriver, HandsTheRangeOfTheSendingTimeOverAsDates)
{
    inbox.AddMessage({.sent = DateOf(2024, 6, 12, 12, 0, 0)});
    state.useSendTime = 1;

    RunSearch();

    EXPECT_EQ(state.sendTimeUpper.vt, VT_DATE);
    EXPECT_EQ(state.sendTimeUpper.date, DateOf(2024, 6, 12, 12, 0, 5));
    EXPECT_EQ(std::ranges::count(store.log.lines, "Property 2 put(I4 3735616)"), 2);
}

TEST_F(ScanDriver, SearchesARealHourAroundASendingTimeThatTheClockLeavesOut)
{
    // In some zones of the machine this hour does not exist; the message then compares by the hour it stands
    // for.
    for (WORD hour = 0; hour < 24; ++hour)
    {
        inbox.messages.clear();
        inbox.AddMessage({.sent = DateOf(2024, 3, 31, hour, 30, 0)});
        state.folders.clear();
        tree.items.clear();
        state.useSendTime = 1;

        RunSearch();

        const DATE shift = (state.sendTimeUpper.date - DateOf(2024, 3, 31, hour, 30, 5)) * 24;
        EXPECT_NEAR(shift, std::round(shift * 2) / 2, 1e-4);
        EXPECT_LE(std::abs(shift), 1.01);
    }
}

TEST_F(ScanDriver, ComparesAMessageOfTheYear1970WithoutItsSendingTime)
{
    inbox.AddMessage({.sent = DateOf(1970, 12, 31, 23, 59, 59)});
    const std::wstring other = inbox.AddMessage({.sent = DateOf(2024, 6, 12, 12, 0, 0)});
    state.useSendTime = 1;

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{other});
    EXPECT_EQ(state.sendTimeRangeSet, 0);
}

TEST_F(ScanDriver, ComparesTheSendingTimeFrom1971To2999)
{
    for (const WORD year : {WORD{1971}, WORD{2999}})
    {
        inbox.messages.clear();
        inbox.AddMessage({.sent = DateOf(year, 6, 12, 12, 0, 0)});
        state.folders.clear();
        tree.items.clear();
        state.useSendTime = 1;

        RunSearch();

        EXPECT_EQ(state.sendTimeRangeSet, 1) << year;
    }
}

TEST_F(ScanDriver, ComparesAMessageOfTheYear3000WithoutItsSendingTime)
{
    inbox.AddMessage({.sent = DateOf(3000, 1, 1, 0, 0, 0)});
    state.useSendTime = 1;

    RunSearch();

    EXPECT_EQ(state.sendTimeRangeSet, 0);
}

TEST_F(ScanDriver, StopsBeforeTheNextItemAndKeepsWhatItHas)
{
    inbox.AddMessage({.subject = L"One"});
    const std::wstring duplicate = inbox.AddMessage({.subject = L"One"});
    inbox.AddMessage({.subject = L"Two"});
    inbox.AddMessage({.subject = L"Two"});
    store.log.onCall = [this](const std::string&)
    {
        if (!progress.rows.empty())
            state.stopRequested = 1;
    };

    RunSearch();

    EXPECT_EQ(FoundIds(), Ids{duplicate});
    EXPECT_EQ(std::ranges::count(store.log.lines, "Items 9 method(I4 3)"), 0);
}

TEST_F(ScanDriver, MakesNoCallWhenStoppedBeforehand)
{
    inbox.AddMessage();
    state.stopRequested = 1;
    LoadTree();
    state.progressDialog = &progress;

    RunDuplicateScan(state, state.folderRoot);

    EXPECT_TRUE(store.log.lines.empty());
}

TEST_F(ScanDriver, SearchesNoFurtherFolderForTheItemInHandOnceStopped)
{
    inbox.AddMessage();
    store.root.AddFolder(L"Archive").AddMessage();
    store.log.onCall = [this](const std::string& line)
    {
        if (line == "Filter 5 method(BOOL -1)")
            state.stopRequested = 1;
    };

    RunSearch();

    EXPECT_EQ(std::ranges::count(store.log.lines, "Items 13 get()"), 1);
    EXPECT_EQ(progress.steps, 1);
}

TEST_F(ScanDriver, KnowsADuplicateByItsExactId)
{
    state.duplicateIds.Append(L"0AFF");

    EXPECT_EQ(IsAlreadyDuplicate(state, L"0AFF"), 1);
    EXPECT_EQ(IsAlreadyDuplicate(state, L"0aff"), 0);
}

TEST_F(ScanDriver, KnowsNoDuplicateOnceStopped)
{
    state.duplicateIds.Append(L"0AFF");
    state.stopRequested = 1;

    EXPECT_EQ(IsAlreadyDuplicate(state, L"0AFF"), 0);
}

TEST_F(ScanDriver, ReleasesEveryObjectOfTheStore)
{
    inbox.AddMessage({.recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});
    inbox.AddMessage({.recipients = {{1, L"Bob"}}, .attachments = {L"a.pdf"}});
    state.useRecipientName = state.useAttachments = state.useSendTime = 1;

    RunSearch();
    state.folders.clear();
    state.folderRoot.ReleaseDispatch();
    state.storeSession.ReleaseDispatch();

    EXPECT_EQ(store.log.liveObjects, 0);
}
}    // namespace
