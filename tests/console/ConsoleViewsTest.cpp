#include "console/CommandLine.h"
#include "console/ConsoleFolderTree.h"
#include "console/ConsoleScanView.h"
#include "console/FolderSelection.h"
#include "console/MailStore.h"
#include "tests/console/Pipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;

namespace
{
std::string WrittenBy(const std::function<void(OutputStream&)>& write)
{
    Pipe pipe;
    OutputStream out(pipe.GetWriteEnd());
    write(out);
    pipe.CloseWriteEnd();
    return pipe.ReadAll();
}

// A folder tree as the engine's walk leaves it: top, Inbox(12), Inbox/Lists(3), Calendar(5), Archive (2014)
class FolderTreeTest : public testing::Test
{
protected:
    FolderTreeTest()
    {
        top = Add(TreeItem::none, L"Top", L"Top");
        inbox = Add(top, L"Inbox", L"Inbox(12)");
        lists = Add(inbox, L"Lists", L"Lists(3)");
        calendar = Add(top, L"Calendar", L"Calendar(5)");
        tree.SetGreyed(calendar);
        archive = Add(top, L"Archive (2014)", L"Archive (2014)");
    }

    TreeItem Add(TreeItem parent, const wchar_t* name, const wchar_t* text)
    {
        FOLDER_INFO folder;
        folder.treeItem = tree.InsertItem(parent, FolderTreeView::Place::last, text, 0, 0);
        folder.selected = 1;
        folder.name = name;
        state.folders.push_back(folder);
        return folder.treeItem;
    }

    std::vector<std::wstring> TickedFolders(std::vector<std::wstring> named,
                                            std::vector<std::wstring> excluded)
    {
        ScanOptions options;
        options.folders = std::move(named);
        options.excluded = std::move(excluded);
        TickFolders(state, tree, MakeFolderPaths(state, tree), options);
        std::vector<std::wstring> ticked;
        for (const FOLDER_INFO& folder : state.folders)
        {
            if (tree.GetCheckState(folder.treeItem) == CheckState::checked)
                ticked.push_back(folder.name);
        }
        return ticked;
    }

    ConsoleFolderTree tree;
    ScanState state;
    TreeItem top, inbox, lists, calendar, archive;
};
}    // namespace

TEST_F(FolderTreeTest, PrintsEachFolderBelowItsParentWithItsCountAndMarksThoseWithoutMail)
{
    const std::string printed = WrittenBy([this](OutputStream& out) { tree.Print(out); });

    EXPECT_EQ(printed, "Top\n"
                       "  Inbox(12)\n"
                       "    Lists(3)\n"
                       "  Calendar(5)  [no mail folder]\n"
                       "  Archive (2014)\n");
}

TEST_F(FolderTreeTest, KeepsTheCountApartFromANameThatEndsInParentheses)
{
    EXPECT_EQ(GetItemCount(state.folders[1], tree), 12);
    EXPECT_EQ(GetItemCount(state.folders[4], tree), 0);
}

TEST_F(FolderTreeTest, TicksEveryFolderWhenNoneIsNamed)
{
    EXPECT_THAT(TickedFolders({}, {}),
                ElementsAre(L"Top", L"Inbox", L"Lists", L"Calendar", L"Archive (2014)"));
}

TEST_F(FolderTreeTest, TicksANamedFolderAndAllBelowIt)
{
    EXPECT_THAT(TickedFolders({L"inbox"}, {}), ElementsAre(L"Inbox", L"Lists"));
}

TEST_F(FolderTreeTest, UnticksAnExcludedFolderAndAllBelowIt)
{
    EXPECT_THAT(TickedFolders({}, {L"Inbox"}), ElementsAre(L"Top", L"Calendar", L"Archive (2014)"));
}

TEST_F(FolderTreeTest, LetsAnExclusionPrevailOverAName)
{
    EXPECT_THAT(TickedFolders({L"Inbox", L"Inbox/Lists"}, {L"Inbox/Lists"}), ElementsAre(L"Inbox"));
}

TEST_F(FolderTreeTest, RefusesAChoiceThatLeavesNoFolderWithMail)
{
    EXPECT_THROW(TickedFolders({L"Calendar"}, {}), UsageError);
    EXPECT_THROW(TickedFolders({L"Inbox"}, {L"Inbox"}), UsageError);
    EXPECT_THROW(TickedFolders({}, {L"Top"}), UsageError);
}

TEST_F(FolderTreeTest, PutsTheDestinationIntoTheSettingsByItsNameAlone)
{
    ChooseDestination(state, tree, MakeFolderPaths(state, tree), L"Inbox/Lists");

    EXPECT_EQ(state.destFolderPath, L"Lists");
}

TEST_F(FolderTreeTest, RefusesADestinationThatHoldsNoMail)
{
    EXPECT_THROW(ChooseDestination(state, tree, MakeFolderPaths(state, tree), L"Calendar"), UsageError);
    EXPECT_EQ(state.destFolderPath, L"");
}

TEST(ConsoleScanView, PrintsAHeaderOnceAndEachRowInColumns)
{
    const std::string printed = WrittenBy(
        [](OutputStream& out)
        {
            ConsoleScanView view({.rows = &out}, StringTable(GetModuleHandleW(nullptr)), ScanEstimate({5}),
                                 12);
            view.AddResultRow(L"Inbox", L"Minutes\tof the\r\nmeeting", 2, 2);
            view.AddResultRow(L"Sent Items", L"Report", 13, 15);
        });

    const std::string blanks(60, ' ');
    EXPECT_EQ(printed, "Folder Name   " + ("Subject" + blanks).substr(0, 60) + "  Duplicate Count\n" +
                           "Inbox         " + ("Minutes of the  meeting" + blanks).substr(0, 60) + "  2\n" +
                           "Sent Items    " + ("Report" + blanks).substr(0, 60) + "  13\n");
}

TEST(ConsoleScanView, NeverCutsATextThatGoesToAFileOrAPipe)
{
    const std::wstring subject(300, L's');

    const std::string printed = WrittenBy(
        [&subject](OutputStream& out)
        {
            ConsoleScanView view({.rows = &out}, StringTable(GetModuleHandleW(nullptr)), ScanEstimate({5}),
                                 5);
            view.AddResultRow(L"A folder with a name that is longer than its column", subject, 2, 2);
        });

    EXPECT_NE(printed.find("A folder with a name that is longer than its column  " + std::string(300, 's') +
                           "  2\n"),
              std::string::npos);
}

TEST(ConsoleScanView, KeepsTheRowsAsTheyWereFoundWhenNothingIsShown)
{
    ConsoleScanView view({}, StringTable(GetModuleHandleW(nullptr)), ScanEstimate({5}), 5);

    view.AddResultRow(L"Inbox", L"two\nlines", 2, 2);
    view.StepProgress();

    ASSERT_EQ(view.GetRows().size(), 1u);
    EXPECT_EQ(view.GetRows()[0].folderName, L"Inbox");
    EXPECT_EQ(view.GetRows()[0].subject, L"two\nlines");
    EXPECT_EQ(view.GetRows()[0].duplicateCount, L"2");
}

TEST(ConsoleScanView, DrawsTheBarAtEachStepAndLeavesItAloneWhenTheRowsGoElsewhere)
{
    std::string rows;

    const std::string drawn = WrittenBy(
        [&rows](OutputStream& terminal)
        {
            rows = WrittenBy(
                [&terminal](OutputStream& out)
                {
                    unsigned long long now = 0;
                    ProgressBar bar(terminal, [&now] { return now += 1000; });
                    ConsoleScanView view({.rows = &out, .bar = &bar}, StringTable(GetModuleHandleW(nullptr)),
                                         ScanEstimate({4}), 5);
                    view.StepProgress();
                    view.AddResultRow(L"Inbox", L"Minutes", 1, 1);
                    view.StepProgress();
                });
        });

    EXPECT_EQ(drawn, "\r[" + std::string(10, '#') + std::string(30, '.') + "] 25%, duplicates: 0\r[" +
                         std::string(26, '#') + std::string(14, '.') + "] 66%, duplicates: 1");
    EXPECT_THAT(rows, testing::HasSubstr("Minutes"));
}
