#include "ui/DuplicateRemoverDlg.h"

#include "tests/ui/DialogProbe.h"
#include "tests/ui/DuplicateRemoverDlgFixture.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
TEST_F(MainPage, HasItsControlsAsTheyStartOut)
{
    std::vector<std::wstring> texts;
    std::vector<bool> enabled;
    bool cancelShown = true;
    bool noticeShown = false;
    LONG treeStyle = 0;
    store.log.onCall = [&](const std::string&)
    {
        if (!texts.empty())
            return;
        const HWND page = ::FindWindowW(nullptr, productTitle);
        for (const int id : {IDC_FOLDERS_GROUP, IDC_PLEASE_WAIT, IDOK, IDC_ABOUT, IDC_HELP_TOPIC, IDCANCEL})
        {
            texts.push_back(TextOf(::GetDlgItem(page, id)));
            enabled.push_back(IsEnabled(page, id));
        }
        cancelShown = (::GetWindowLongW(::GetDlgItem(page, IDCANCEL), GWL_STYLE) & WS_VISIBLE) != 0;
        noticeShown = (::GetWindowLongW(::GetDlgItem(page, IDC_PLEASE_WAIT), GWL_STYLE) & WS_VISIBLE) != 0;
        treeStyle = ::GetWindowLongW(::GetDlgItem(page, IDC_FOLDER_TREE), GWL_STYLE);
    };

    UseLoaded([](ModalDriver& user, HWND page) { user.Click(page, IDCANCEL); });

    EXPECT_EQ(texts, (std::vector<std::wstring>{L"Folders List:", L"Please wait... Initializing...", L"Next",
                                                L"About", L"Help", L"Cancel"}));
    EXPECT_EQ(enabled, (std::vector<bool>{true, true, false, false, false, true}));
    EXPECT_FALSE(cancelShown);
    EXPECT_TRUE(noticeShown);
    constexpr LONG wanted = TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | WS_TABSTOP;
    EXPECT_EQ(treeStyle & wanted, wanted);
    EXPECT_EQ(treeStyle & TVS_CHECKBOXES, 0);
}

TEST_F(MainPage, LogsOnOnceWithTheDefaultProfile)
{
    UseLoaded([](ModalDriver& user, HWND page) { user.Click(page, IDCANCEL); });

    std::vector<std::string> logons;
    for (const std::string& line : store.log.lines)
    {
        if (line.starts_with("Session 4 "))
            logons.push_back(line);
    }
    ASSERT_EQ(logons.size(), 1u);
    EXPECT_EQ(logons[0].substr(0, logons[0].find("ERROR")), "Session 4 method(BSTR , I4 0, ");
}

TEST_F(MainPage, ShowsEveryFolderCheckedAndOpensItsButtonsWhenTheTreeIsThere)
{
    std::vector<std::wstring> items;
    std::vector<bool> enabled;
    bool noticeShown = true;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            items = ItemsOf(page);
            for (const int id : {IDOK, IDC_ABOUT, IDC_HELP_TOPIC})
                enabled.push_back(IsEnabled(page, id));
            noticeShown = IsShown(page, IDC_PLEASE_WAIT);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(items, (std::vector<std::wstring>{L"Mailbox:2", L"Inbox(2):2", L"Lists(1):2", L"Calendar:2"}));
    EXPECT_EQ(enabled, (std::vector<bool>{true, true, true}));
    EXPECT_FALSE(noticeShown);
}

TEST_F(MainPage, GivesTheTreeItsImagesOnWhite)
{
    int folderImages = 0;
    int checkImages = 0;
    COLORREF background = 0;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            const HWND tree = ::GetDlgItem(page, IDC_FOLDER_TREE);
            const auto count = [&](WPARAM kind)
            {
                return ::ImageList_GetImageCount(
                    reinterpret_cast<HIMAGELIST>(::SendMessageW(tree, TVM_GETIMAGELIST, kind, 0)));
            };
            ModalDriver::RunOnThreadOf(page,
                                       [&]
                                       {
                                           folderImages = count(TVSIL_NORMAL);
                                           checkImages = count(TVSIL_STATE);
                                       });
            background = static_cast<COLORREF>(::SendMessageW(tree, TVM_GETBKCOLOR, 0, 0));
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(folderImages, 12);
    EXPECT_EQ(checkImages, 4);
    EXPECT_EQ(background, RGB(255, 255, 255));
}

TEST_F(MainPage, DrawsItsCaptionInBlueOnLightYellow)
{
    Colours group{};
    Colours notice{};

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            group = ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, IDC_FOLDERS_GROUP));
            notice = ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, IDC_PLEASE_WAIT));
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(group.text, RGB(0, 0, 255));
    EXPECT_EQ(notice.text, RGB(0, 0, 0));
    EXPECT_EQ(group.brush, RGB(255, 245, 196));
    EXPECT_EQ(notice.textBackground, RGB(255, 245, 196));
}

TEST_F(MainPage, LaysNothingOverAnything)
{
    std::vector<std::wstring> faults;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            faults = LayoutFaultsOf(page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(faults, std::vector<std::wstring>());
}

TEST_F(MainPage, IsUsableFromTheKeyboardInOrder)
{
    std::vector<int> order;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            order = TabOrderOf(page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(order, (std::vector<int>{IDC_FOLDER_TREE, IDC_HELP_TOPIC, IDC_ABOUT, IDOK}));
}

TEST_F(MainPage, AsksForAFolderWhenNoneIsTicked)
{
    std::wstring told;
    bool shownAfterwards = false;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            SetCheckOfAll(page, 1);
            user.PostClick(page, IDOK);
            const HWND box = user.WaitForDialog(productTitle, IDC_MESSAGE_TEXT);
            told = TextOf(::GetDlgItem(box, IDC_MESSAGE_TEXT));
            user.Click(box, IDOK);
            user.WaitForEnd(box);
            shownAfterwards = ::IsWindowVisible(page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(told, L"Select atleast one folder item.");
    EXPECT_TRUE(shownAfterwards);
}

TEST_F(MainPage, TakesAPartlyCheckedFolderForATickedOne)
{
    bool settingsCame = false;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            SetCheckOfAll(page, 1);
            const Tree tree(page);
            tree.SetCheckIndex(tree.GetRootItem(), 3);
            user.PostClick(page, IDOK);
            const HWND settings = user.WaitForDialog(productTitle, IDC_TIME_SPAN);
            settingsCame = true;
            user.Click(settings, IDCANCEL);
            user.WaitForEnd(settings);
            user.Click(page, IDCANCEL);
        });

    EXPECT_TRUE(settingsCame);
}

TEST_F(MainPage, ComesBackAsItWasWhenTheSettingsAreCancelled)
{
    bool hidden = false;
    bool shownAgain = false;
    std::vector<std::wstring> before;
    std::vector<std::wstring> after;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            const Tree tree(page);
            tree.SetCheckIndex(tree.GetRootItem(), 3);
            before = ItemsOf(page);
            user.PostClick(page, IDOK);
            const HWND settings = user.WaitForDialog(productTitle, IDC_TIME_SPAN);
            hidden = !::IsWindowVisible(page);
            user.Click(settings, IDCANCEL);
            user.WaitUntil([page] { return ::IsWindowVisible(page); }, "the page to come back");
            shownAgain = true;
            after = ItemsOf(page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_TRUE(hidden);
    EXPECT_TRUE(shownAgain);
    EXPECT_EQ(after, before);
}

class MainPageInARun : public MainPage
{
protected:
    // From the page on, with the defaults of the settings, to the report of the run.
    static HWND RunToTheReport(ModalDriver& user, HWND page)
    {
        user.PostClick(page, IDOK);
        const HWND settings = user.WaitForDialog(productTitle, IDC_TIME_SPAN);
        user.PostClick(settings, IDOK);
        const HWND report = user.WaitForDialog(productTitle, IDC_REPORT);
        const HWND box = user.WaitForDialog(productTitle, IDC_MESSAGE_TEXT);
        user.Click(box, IDOK);
        user.WaitForEnd(box);
        user.WaitUntil([report] { return ::IsWindowEnabled(::GetDlgItem(report, IDC_SAVE_LOG)); },
                       "the run's end");
        return report;
    }
};

TEST_F(MainPageInARun, ClosesBehindIt)
{
    const INT_PTR result =
        UseLoaded([](ModalDriver& user, HWND page) { user.Click(RunToTheReport(user, page), IDCANCEL); });

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(store.deletedItems.messages.size(), 1u);
    EXPECT_EQ(store.log.liveObjects, 0);
}

TEST_F(MainPage, ShowsTheHelpFileOfTheInstallation)
{
    const InstallEntry entry;
    entry.Set(L"C:\\Program Files\\Product");

    UseLoaded(
        [](ModalDriver& user, HWND page)
        {
            user.Click(page, IDC_HELP_TOPIC);
            user.Click(page, IDCANCEL);
        });

    ASSERT_EQ(helpShown.size(), 1u);
    EXPECT_EQ(helpShown[0].second, L"C:\\Program Files\\Product\\tqodr_v1.0.chm");
}

TEST_F(MainPage, LooksForHelpInTheRootWithoutAUsablePath)
{
    const InstallEntry entry;
    entry.Set(L"C:\\" + std::wstring(130, L'x'));

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            user.Click(page, IDC_HELP_TOPIC);
            entry.Remove();
            user.Click(page, IDC_HELP_TOPIC);
            user.Click(page, IDCANCEL);
        });

    ASSERT_EQ(helpShown.size(), 2u);
    EXPECT_EQ(helpShown[0].second, L"\\tqodr_v1.0.chm");
    EXPECT_EQ(helpShown[1].second, L"\\tqodr_v1.0.chm");
}

TEST_F(MainPage, OpensTheAboutDialog)
{
    std::wstring caption;

    UseLoaded(
        [&](ModalDriver& user, HWND page)
        {
            user.PostClick(page, IDC_ABOUT);
            const HWND about = user.WaitForDialog(L"About");
            caption = TextOf(about);
            user.Click(about, IDOK);
            user.WaitForEnd(about);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(caption, L"About");
}

TEST_F(MainPage, LeavesNothingBehindAfterTwoHundredRounds)
{
    const auto round = [this]
    {
        UseLoaded(
            [](ModalDriver& user, HWND page)
            {
                ::RedrawWindow(page, nullptr, nullptr,
                               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
                user.Click(page, IDCANCEL);
            });
    };
    round();
    const HandleCounts before = HandleCounts::Now();

    for (int i = 0; i < 200; ++i)
        round();

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
    EXPECT_EQ(store.log.liveObjects, 0);
}
}    // namespace
