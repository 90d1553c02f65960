// The straight road through the wizard, and what it leaves in the store.
#include "tests/ui/WizardFixture.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{
TEST_F(Wizard, TreatsEveryDuplicateByEachAction)
{
    const std::vector<std::wstring> names{L"Delete (move to Deleted Items folder)",
                                          L"Mark as expired",
                                          L"Copy to folder...",
                                          L"Move to folder...",
                                          L"Mark with the flag",
                                          L"Delete permanently"};
    for (const Action action : {moveToDeletedItems, expire, copy, move, flag, deletePermanently})
    {
        const WizardStore fresh;
        const StoreVariable other(std::filesystem::path(fresh.File().Path()).c_str());
        const RunChoice choice = AllFolders(action);
        const ExpectedRun expected(fresh, choice);
        std::wstring told;

        Use([&](WizardUser& user) { told = Run(user, choice); });

        EXPECT_GT(expected.CountDuplicates(), 10u);
        EXPECT_EQ(told, Completed(expected.CountDuplicates(), names.at(static_cast<std::size_t>(action))));
        EXPECT_EQ(fresh.Messages(), expected.MessagesAfter()) << "action " << action;
        EXPECT_TRUE(fresh.IsWhole());
    }
}

TEST_F(Wizard, ComparesByEachCriterion)
{
    for (bool RunChoice::*criterion :
         {&RunChoice::senderName, &RunChoice::recipientName, &RunChoice::internetHeader,
          &RunChoice::attachments, &RunChoice::sendTime})
    {
        const WizardStore fresh;
        const StoreVariable other(std::filesystem::path(fresh.File().Path()).c_str());
        RunChoice choice = AllFolders(flag);
        const std::size_t withoutIt = ExpectedRun(fresh, choice).CountDuplicates();
        choice.*criterion = true;
        const ExpectedRun expected(fresh, choice);

        Use([&](WizardUser& user) { Run(user, choice); });

        EXPECT_LT(expected.CountDuplicates(), withoutIt);
        EXPECT_EQ(fresh.Messages(), expected.MessagesAfter());
    }
}

TEST_F(Wizard, ComparesMailOfTheTimeSpanOnly)
{
    RunChoice choice = AllFolders(flag);
    choice.days = 50;
    const ExpectedRun expected(store, choice);

    Use([&](WizardUser& user) { Run(user, choice); });

    EXPECT_GT(expected.CountDuplicates(), 0u);
    EXPECT_LT(expected.CountDuplicates(), ExpectedRun(store, AllFolders(flag)).CountDuplicates());
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

TEST_F(Wizard, CopiesFromTheTickedFoldersAloneAfterADestinationWasPicked)
{
    RunChoice choice = AllFolders(copy);
    std::vector<int> ticked;
    std::vector<int> shownAgain;
    const std::size_t projects = store.PlaceOf("Projects");
    const std::size_t gamma = store.PlaceOf("Gamma");
    const std::size_t lists = store.PlaceOf("Lists");

    const std::vector<std::string> before = store.Messages();
    std::vector<std::string> expectedMessages;
    Use(
        [&](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.ClickCheckBox(projects);
            user.PressSpaceOn(gamma);
            user.PressSpaceOn(lists);
            ticked = user.Checks();
            choice.folders.clear();
            for (std::size_t i = 0; i < ticked.size(); ++i)
                if (ticked[i] == 2 || ticked[i] == 3)
                    choice.folders.push_back(store.Folders().at(i));
            expectedMessages = ExpectedRun(store, choice).MessagesAfter();

            user.Press(Page::folders, IDOK);
            user.ChooseFromList(IDC_ACTION, copy);
            user.PickDestination(store.PlaceOf("Kept"));
            user.Press(Page::settings, IDCANCEL);
            shownAgain = user.Checks();
            Run(user, choice);
        });

    EXPECT_EQ(ticked.at(projects), 3);
    EXPECT_EQ(ticked.at(gamma), 2);
    EXPECT_EQ(ticked.at(lists), 1);
    EXPECT_EQ(shownAgain, ticked);
    EXPECT_NE(expectedMessages, before);
    EXPECT_EQ(store.Messages(), expectedMessages);
}

TEST_F(Wizard, RunsAgainAfterAFirstRun)
{
    RunChoice choice = AllFolders(moveToDeletedItems);
    Use([&](WizardUser& user) { Run(user, choice); });
    choice.action = deletePermanently;
    const ExpectedRun expected(store, choice);

    Use([&](WizardUser& user) { Run(user, choice); });

    EXPECT_GT(expected.CountDuplicates(), 0u);
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

TEST_F(Wizard, RefusesARunWithoutADestinationAndKeepsItsTimeSpan)
{
    RunChoice choice = AllFolders(flag);
    choice.days = 5;
    const ExpectedRun expected(store, choice);
    std::wstring asked;

    Use(
        [&](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.Press(Page::folders, IDOK);
            user.ChooseFromList(IDC_TIME_SPAN, 2);
            user.ChooseFromList(IDC_ACTION, move);
            user.Press(Page::settings, IDOK);
            asked = user.MessageText();
            user.Press(Page::notice, IDOK);
            user.ChooseFromList(IDC_TIME_SPAN, 10);
            user.ChooseFromList(IDC_ACTION, flag);
            user.Press(Page::settings, IDOK);
            user.FinishRun();
            user.Press(Page::progress, IDCANCEL);
        });

    EXPECT_EQ(asked, L"Click 'Select' button and specify destination folder.");
    EXPECT_LT(expected.CountDuplicates(), ExpectedRun(store, AllFolders(flag)).CountDuplicates());
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

TEST_F(Wizard, AsksForAFolderWhenNoneIsTicked)
{
    std::wstring asked;

    Use(
        [&](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.ClickCheckBox(0);
            user.Press(Page::folders, IDOK);
            asked = user.MessageText();
            user.Press(Page::notice, IDOK);
            user.PressEscape(Page::folders);
        });

    EXPECT_EQ(asked, L"Select atleast one folder item.");
}

TEST_F(Wizard, ShowsHelpAboutAndTheLicenceOnTheWay)
{
    const WizardRun run = Use(
        [](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.Press(Page::folders, IDC_HELP_TOPIC);
            user.Press(Page::folders, IDC_ABOUT);
            user.Press(Page::about, IDC_EULA);
            user.PressEscape(Page::licence);
            user.PressEscape(Page::about);
            user.PressEscape(Page::folders);
        });

    EXPECT_EQ(run.helpFiles, std::vector<std::wstring>{folder.Path() + L"\\tqodr_v1.0.chm"});
}

TEST_F(Wizard, SavesTheReportAfterTheRun)
{
    const RunChoice choice = AllFolders(flag);
    const std::wstring path = folder.Path() + L"\\report.txt";
    std::vector<std::wstring> told;
    bool enabledMeanwhile = true;

    Use(
        [&](WizardUser& user)
        {
            StartRun(user, choice);
            user.WaitForOneOf({Page::notice});
            enabledMeanwhile =
                ::IsWindowEnabled(::GetDlgItem(::GetWindow(user.Window(), GW_OWNER), IDC_SAVE_LOG)) != FALSE;
            user.FinishRun();
            user.Press(Page::progress, IDC_SAVE_LOG);
            user.TypeFileName(path);
            user.Press(Page::saveDialog, IDOK);
            told.push_back(user.MessageText());
            user.PressReturn(Page::logMessage);
            user.Press(Page::progress, IDCANCEL);
        });

    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    const std::string report{std::istreambuf_iterator<char>(file), {}};
    EXPECT_FALSE(enabledMeanwhile);
    EXPECT_THAT(told, testing::ElementsAre(L"Log Information saved at: " + path + L"."));
    EXPECT_EQ(report.rfind("Talmore Quorvex Outlook Duplicate Remover\r\n\r\nItem Number: 1\r\n", 0), 0u);
}
TEST_F(Wizard, ClosesAfterTheSaveDialogWhenThePageBelowItWasClosed)
{
    Use(
        [&](WizardUser& user)
        {
            StartRun(user, AllFolders(flag));
            user.FinishRun();
            const HWND page = user.Window();
            user.Press(Page::progress, IDC_SAVE_LOG);
            user.WaitFor(Page::saveDialog);
            ::PostMessageW(page, WM_COMMAND, IDCANCEL, 0);
            user.Press(Page::saveDialog, IDCANCEL);
            user.WaitForOneOf({Page::closed});
        });
}
}    // namespace
