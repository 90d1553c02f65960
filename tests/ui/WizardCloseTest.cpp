// Every page of the wizard closed in each of the ways that its user has, idle and during work.
#include "tests/ui/WizardFixture.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
enum class Way
{
    button,
    escape,
    closeBox
};

std::string NameOfWay(const testing::TestParamInfo<Way>& info)
{
    static constexpr const char* names[] = {"ByTheButton", "ByEsc", "ByTheCloseBox"};
    return names[static_cast<std::size_t>(info.param)];
}

class WizardClosed : public Wizard, public testing::WithParamInterface<Way>
{
protected:
    static void Close(WizardUser& user, Page page, int button = IDCANCEL)
    {
        if (GetParam() == Way::escape)
            user.PressEscape(page);
        else if (GetParam() == Way::closeBox)
            user.PressCloseBox(page);
        else if (page == Page::folders)
            user.PressCancelUnseen();
        else
            user.Press(page, button);
    }

    // So many that reading or searching them takes a while.
    void AddFolders(int count) const
    {
        store.File().Run(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
            std::to_string(count) +
            ") INSERT INTO folder (parent_id, name, container_class) SELECT 110, 'Folder ' || i, "
            "'IPF.Note' FROM n;");
    }
    void AddMessages(int count) const
    {
        store.File().Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                         std::to_string(count) +
                         ") INSERT INTO message (folder_id, message_class, subject, display_to, display_cc, "
                         "display_bcc) SELECT 3, 'IPM.Note', 'Number ' || i, '', '', '' FROM n;");
    }
    std::size_t CountFolders() const { return store.Folders().size(); }
};

TEST_P(WizardClosed, OnTheFolders)
{
    Use(
        [](WizardUser& user)
        {
            user.WaitUntilLoaded();
            Close(user, Page::folders);
            user.WaitForOneOf({Page::closed});
        });
}

TEST_P(WizardClosed, WhileTheFoldersAreReadAsksAndGoesOnAfterNo)
{
    AddFolders(600);
    std::size_t shown = 0;

    Use(
        [&](WizardUser& user)
        {
            user.WaitFor(Page::folders);
            Close(user, Page::folders);
            user.Answer(false);
            user.WaitUntilLoaded();
            shown = user.Folders().size();
            Close(user, Page::folders);
        });

    EXPECT_EQ(shown, CountFolders());
}

TEST_P(WizardClosed, WhileTheFoldersAreReadStopsAfterYesAndStaysOpen)
{
    AddFolders(3000);
    std::size_t shown = 0;

    Use(
        [&](WizardUser& user)
        {
            user.WaitFor(Page::folders);
            Close(user, Page::folders);
            user.Answer(true);
            user.WaitUntilLoaded();
            shown = user.Folders().size();
            Close(user, Page::folders);
        });

    EXPECT_LT(shown, CountFolders());
}

TEST_P(WizardClosed, OnTheSettingsComesBackToTheFolders)
{
    std::vector<int> before;
    std::vector<int> after;

    Use(
        [&](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.ClickCheckBox(store.PlaceOf("Archive"));
            before = user.Checks();
            user.Press(Page::folders, IDOK);
            Close(user, Page::settings);
            after = user.Checks();
            Close(user, Page::folders);
        });

    EXPECT_EQ(after, before);
}

TEST_P(WizardClosed, OnThePickerForgetsTheDestination)
{
    std::wstring destination = L"?";

    Use(
        [&](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.Press(Page::folders, IDOK);
            user.ChooseFromList(IDC_ACTION, move);
            user.Press(Page::settings, IDC_SELECT_DESTINATION);
            user.SelectInPicker(store.PlaceOf("Kept"));
            Close(user, Page::picker);
            destination = TextOf(::GetDlgItem(user.WaitFor(Page::settings), IDC_DESTINATION));
            user.Press(Page::settings, IDOK);
            Close(user, Page::notice, IDOK);
            Close(user, Page::settings);
            Close(user, Page::folders);
        });

    EXPECT_EQ(destination, L"");
}

TEST_P(WizardClosed, OnTheAboutPagesComesBackToTheFolders)
{
    Use(
        [](WizardUser& user)
        {
            user.WaitUntilLoaded();
            user.Press(Page::folders, IDC_ABOUT);
            user.Press(Page::about, IDC_EULA);
            Close(user, Page::licence, IDOK);
            Close(user, Page::about, IDOK);
            Close(user, Page::folders);
        });
}

TEST_P(WizardClosed, AfterARunClosesEveryPage)
{
    const RunChoice choice = AllFolders(flag);
    const ExpectedRun expected(store, choice);

    Use(
        [&](WizardUser& user)
        {
            StartRun(user, choice);
            Close(user, Page::notice, IDOK);
            user.WaitFor(Page::progress);
            user.WaitUntil([&]
                           { return ::IsWindowEnabled(::GetDlgItem(user.Window(), IDC_SAVE_LOG)) != FALSE; },
                           "the end of the run");
            Close(user, Page::progress);
            user.WaitForOneOf({Page::closed});
        });

    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

TEST_P(WizardClosed, DuringARunAsksAndGoesOnAfterNo)
{
    AddMessages(300);
    const RunChoice choice = AllFolders(deletePermanently);
    const ExpectedRun expected(store, choice);
    std::wstring told;

    Use(
        [&](WizardUser& user)
        {
            StartRun(user, choice);
            Close(user, Page::progress);
            user.Answer(false);
            told = user.FinishRun();
            Close(user, Page::progress);
        });

    EXPECT_EQ(told, Completed(expected.CountDuplicates(), L"Delete permanently"));
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

TEST_P(WizardClosed, DuringARunStopsAfterYesAndChangesNothing)
{
    AddMessages(5000);
    const std::vector<std::string> before = store.Messages();
    std::wstring told;
    bool closedAtOnce = false;

    Use(
        [&](WizardUser& user)
        {
            StartRun(user, AllFolders(deletePermanently));
            Close(user, Page::progress);
            user.Answer(true);
            told = user.FinishRun();
            closedAtOnce = user.Look() != Page::progress;
            Close(user, Page::progress);
        });

    EXPECT_EQ(told.rfind(L"Process aborted by user.\n\nTotal duplicates items: ", 0), 0u);
    EXPECT_FALSE(closedAtOnce);
    EXPECT_EQ(store.Messages(), before);
}

TEST_P(WizardClosed, DuringARunThatEndsBeforeTheAnswerTreatsAllOfIt)
{
    AddMessages(300);
    const RunChoice choice = AllFolders(deletePermanently);
    const ExpectedRun expected(store, choice);
    std::wstring told;

    Use(
        [&](WizardUser& user)
        {
            StartRun(user, choice);
            Close(user, Page::progress);
            user.WaitFor(Page::stopQuestion);
            user.WaitUntil(
                []
                {
                    const std::vector<HWND> dialogs = ShownDialogs();
                    return !dialogs.empty() && Identify(dialogs.front()) == Page::notice;
                },
                "the end of the run over the question");
            user.Answer(true);
            told = user.FinishRun();
            Close(user, Page::progress);
        });

    EXPECT_EQ(told, Completed(expected.CountDuplicates(), L"Delete permanently"));
    EXPECT_EQ(store.Messages(), expected.MessagesAfter());
}

INSTANTIATE_TEST_SUITE_P(Page, WizardClosed, testing::Values(Way::button, Way::escape, Way::closeBox),
                         &NameOfWay);
}    // namespace
