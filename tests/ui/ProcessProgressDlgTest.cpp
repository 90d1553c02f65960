#include "tests/ui/ProcessProgressDlgFixture.h"

#include "tests/ui/DialogProbe.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const COLORREF lightYellow = RGB(255, 245, 196);
const COLORREF blue = RGB(0, 0, 255);

// The page without a run.
class ProgressPageItself : public ProgressPage
{
protected:
    CProcessProgressDlg dialog{state, nullptr, [](ScanState&, ScanProgressView&) { return true; }};

    INT_PTR Show(const UserOfPage& look)
    {
        return Use(dialog,
                   [&](ModalDriver& user, HWND page)
                   {
                       look(user, page);
                       user.PostClick(page, IDCANCEL);
                   });
    }
    static LRESULT Ask(HWND page, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return ::SendMessageW(::GetDlgItem(page, control), message, wParam, lParam);
    }
    static bool HasStyle(HWND page, int control, LONG_PTR style)
    {
        return (::GetWindowLongPtrW(::GetDlgItem(page, control), GWL_STYLE) & style) == style;
    }
};

TEST_F(ProgressPageItself, IsAsLargeAsItsTemplateSays)
{
    Show([](ModalDriver&, HWND page) { EXPECT_EQ(ClientSizeOf(page), PixelsOf(page, 317, 295)); });
}

TEST_F(ProgressPageItself, HasTheTextsOfItsControls)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            EXPECT_EQ(TextOf(::GetDlgItem(page, 228)), L"Log Report");
            EXPECT_EQ(TextOf(::GetDlgItem(page, 217)), L"Save Log");
            EXPECT_EQ(TextOf(::GetDlgItem(page, 2)), L"Close");
            EXPECT_EQ(TextOf(::GetDlgItem(page, 219)), L"");
            EXPECT_NE(StaticWithText(page, L"Total Duplicates:"), nullptr);
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, 217)));
            EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(page, 2)));
        });
}

TEST_F(ProgressPageItself, HasAListOfThreeColumns)
{
    Show(
        [](ModalDriver&, HWND page)
        {
            EXPECT_TRUE(HasStyle(page, 218, LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP));
            EXPECT_EQ(Ask(page, 218, LVM_GETEXTENDEDLISTVIEWSTYLE), LVS_EX_FULLROWSELECT);
            const int width = ::MulDiv(130, static_cast<int>(::GetDpiForWindow(page)), 96);
            std::vector<std::wstring> headings;
            wchar_t heading[260] = L"";
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
            column.pszText = heading;
            column.cchTextMax = ARRAYSIZE(heading);
            while (Ask(page, 218, LVM_GETCOLUMNW, headings.size(), reinterpret_cast<LPARAM>(&column)))
            {
                headings.emplace_back(heading);
                EXPECT_EQ(column.cx, width);
                EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
            }
            EXPECT_THAT(headings, ElementsAre(L"Folder Name", L"Subject", L"Duplicate Count"));
        });
}

TEST_F(ProgressPageItself, ShowsItsColumnsWithoutScrollingAside)
{
    Show(
        [](ModalDriver&, HWND page)
        {
            const HWND list = ::GetDlgItem(page, 218);
            const int columns = ListView_GetColumnWidth(list, 0) + ListView_GetColumnWidth(list, 1) +
                                ListView_GetColumnWidth(list, 2);
            EXPECT_LE(columns + ::GetSystemMetrics(SM_CXVSCROLL), ClientSizeOf(list).cx);
        });
}

TEST_F(ProgressPageItself, FramesItsList)
{
    Show(
        [](ModalDriver&, HWND page)
        {
            const HWND list = ::GetDlgItem(page, 218);
            RECT whole{};
            ::GetWindowRect(list, &whole);
            EXPECT_LT(ClientSizeOf(list).cx, whole.right - whole.left);
        });
}

TEST_F(ProgressPageItself, HasRoomForAllItShows)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            dialog.AddResultRow(L"Inbox", L"Meeting", 2147483647, 2147483647);
            EXPECT_THAT(LayoutFaultsOf(page), IsEmpty());
            const RECT label = RectIn(page, StaticWithText(page, L"Total Duplicates:"));
            const RECT total = RectIn(page, ::GetDlgItem(page, 219));
            EXPECT_LE(label.right, total.left);
            EXPECT_EQ(label.top, total.top);
        });
}

TEST_F(ProgressPageItself, IsYellowWithABlueCaptionOfItsGroup)
{
    Show(
        [](ModalDriver&, HWND page)
        {
            const Colours group = ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, 228));
            EXPECT_EQ(group.text, blue);
            std::vector<Colours> answers{group, ColoursOf(page, WM_CTLCOLORDLG, page)};
            for (const int button : {217, 2})
                answers.push_back(ColoursOf(page, WM_CTLCOLORBTN, ::GetDlgItem(page, button)));
            for (const HWND child : ChildrenOf(page))
                answers.push_back(ColoursOf(page, WM_CTLCOLORSTATIC, child));
            for (const Colours& colours : answers)
            {
                EXPECT_EQ(colours.brushStyle, static_cast<UINT>(BS_SOLID));
                EXPECT_EQ(colours.brush, lightYellow);
                EXPECT_EQ(colours.textBackground, lightYellow);
            }
            EXPECT_EQ(ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, 219)).text, RGB(0, 0, 0));
        });
}

TEST_F(ProgressPageItself, GoesFromControlToControlByTab)
{
    Show(
        [](ModalDriver& user, HWND page)
        {
            EXPECT_THAT(TabOrderOf(page), ElementsAre(218, 2));
            ::EnableWindow(::GetDlgItem(page, 217), TRUE);
            EXPECT_THAT(TabOrderOf(page), ElementsAre(218, 217, 2));
            EXPECT_EQ(user.FocusOf(page), ::GetDlgItem(page, 218));
        });
}

TEST_F(ProgressPageItself, AddsEachRowBehindTheOthers)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            dialog.AddResultRow(L"Inbox", L"Report", 2, 2);
            dialog.AddResultRow(L"Archive", L"Agenda", 13, 15);

            EXPECT_THAT(RowsOf(page),
                        ElementsAre(Row{L"Inbox", L"Report", L"2"}, Row{L"Archive", L"Agenda", L"13"}));
        });
}

TEST_F(ProgressPageItself, KeepsLongTextsWhole)
{
    const std::wstring subject(1000, L'x');
    Show(
        [&](ModalDriver&, HWND page)
        {
            dialog.AddResultRow(L"In&box", subject, 1, 1);

            EXPECT_THAT(RowsOf(page), ElementsAre(Row{L"In&box", subject, L"1"}));
        });
}

TEST_F(ProgressPageItself, ShowsTheNumberAloneAsTheTotal)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            dialog.AddResultRow(L"Inbox", L"Report", 2, 3);
            dialog.AddResultRow(L"Inbox", L"Agenda", 2, 5);

            EXPECT_EQ(TextOf(::GetDlgItem(page, 219)), L"5");
        });
}

TEST_F(ProgressPageItself, SelectsAndShowsTheNewestRowAlone)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            for (int i = 0; i < 100; ++i)
                dialog.AddResultRow(L"Inbox", L"Report", 1, i + 1);

            const HWND list = ::GetDlgItem(page, 218);
            const int lastVisible = ListView_GetTopIndex(list) + ListView_GetCountPerPage(list);
            EXPECT_EQ(Ask(page, 218, LVM_GETSELECTEDCOUNT), 1);
            EXPECT_NE(Ask(page, 218, LVM_GETITEMSTATE, 99, LVIS_SELECTED), 0);
            EXPECT_GE(lastVisible, 100);
        });
}

TEST_F(ProgressPageItself, FillsItsProgressBarInTenStepsAndStartsAgain)
{
    Show(
        [&](ModalDriver&, HWND page)
        {
            std::vector<LRESULT> positions{Ask(page, 216, PBM_GETPOS)};
            for (int step = 0; step < 12; ++step)
            {
                dialog.StepProgress();
                positions.push_back(Ask(page, 216, PBM_GETPOS));
            }

            EXPECT_EQ(Ask(page, 216, PBM_GETRANGE, TRUE), 0);
            EXPECT_EQ(Ask(page, 216, PBM_GETRANGE, FALSE), 100);
            EXPECT_EQ(positions[0], 0);
            EXPECT_EQ(positions[1], 10);
            EXPECT_EQ(positions[10], 100);
            EXPECT_LT(positions[11], 100);
            EXPECT_EQ(positions[12], positions[11] + 10);
        });
}

TEST_F(ProgressPageItself, IsNotClosedByTheEnterKey)
{
    const INT_PTR result = Show(
        [](ModalDriver& user, HWND page)
        {
            user.PressKey(page, VK_RETURN);
            user.PressKey(page, VK_TAB);
            user.WaitUntil([&] { return user.FocusOf(page) == ::GetDlgItem(page, 2); },
                           "the focus on another control");
        });

    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(ProgressPageItself, StartsWithAnEmptyListWhenItIsShownAgain)
{
    Show([&](ModalDriver&, HWND) { dialog.AddResultRow(L"Inbox", L"Report", 1, 1); });

    Show(
        [&](ModalDriver&, HWND page)
        {
            EXPECT_THAT(RowsOf(page), IsEmpty());
            dialog.AddResultRow(L"Archive", L"Agenda", 1, 1);
            EXPECT_THAT(RowsOf(page), ElementsAre(Row{L"Archive", L"Agenda", L"1"}));
        });
}

TEST_F(ProgressPageItself, SavesNothingWhenItsListIsEmpty)
{
    Show(
        [](ModalDriver& user, HWND page)
        {
            ::EnableWindow(::GetDlgItem(page, 217), TRUE);

            user.Click(page, 217);

            EXPECT_THAT(ShownDialogs(), ElementsAre(page));
        });
}

TEST_F(ProgressPageItself, TellsWhenNoThreadCanBeHadAndCanBeClosed)
{
    CProcessProgressDlg lonely(state, nullptr, [](ScanState&, ScanProgressView&) { return false; });
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND message = self.WaitForDialog(title);
            EXPECT_NE(TextOf(::GetDlgItem(message, 0xFFFF)), L"");
            self.PressKey(message, VK_RETURN);
            self.PostClick(self.WaitForDialog(title, IDC_SAVE_LOG), IDCANCEL);
        });

    EXPECT_EQ(lonely.DoModal(), IDCANCEL);
}

using ProgressPageInARun = ProgressPage;

TEST_F(ProgressPageInARun, ListsEveryGroupOfDuplicates)
{
    AddFolder(L"Inbox", L"Report", 3);
    AddFolder(L"Archive", L"Agenda", 1);
    AddFolder(L"Lists", L"Alone", 0);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            WaitForTheEnd(user, page);
            EXPECT_THAT(RowsOf(page),
                        ElementsAre(Row{L"Inbox", L"Report", L"3"}, Row{L"Archive", L"Agenda", L"1"}));
            EXPECT_EQ(TextOf(::GetDlgItem(page, 219)), L"4");
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_TRUE(state.folders.empty());
}

TEST_F(ProgressPageInARun, IsStartedByShowingThePage)
{
    AddFolder(L"Inbox", L"Report", 1);
    JobGate gate(store);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return gate.IsReached(); }, "the job");
            EXPECT_NE(state.workerThread, nullptr);
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, 217)));
            EXPECT_TRUE(::IsWindowVisible(::GetDlgItem(page, 216)));
            gate.Open();
            WaitForTheEnd(user, page);
            user.PostClick(page, IDCANCEL);
        });
}

TEST_F(ProgressPageInARun, TakesTheProgressBarAwayBeforeItTellsTheEnd)
{
    AddFolder(L"Inbox", L"Report", 1);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            const HWND message = WaitForEndMessage(user);
            EXPECT_FALSE(::IsWindowVisible(::GetDlgItem(page, 216)));
            EXPECT_EQ(::SendDlgItemMessageW(page, 216, PBM_GETPOS, 0, 0), 0);
            Dismiss(user, message, page);
            user.PostClick(page, IDCANCEL);
        });
}

TEST_F(ProgressPageInARun, IsStillOnUntilItsEndIsDismissed)
{
    AddFolder(L"Inbox", L"Report", 1);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            const HWND message = WaitForEndMessage(user);
            EXPECT_EQ(::GetWindow(message, GW_OWNER), page);
            EXPECT_FALSE(::IsWindowEnabled(page));
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, 217)));
            EXPECT_NE(state.workerThread, nullptr);
            Dismiss(user, message, page);
            EXPECT_EQ(state.workerThread, nullptr);
            user.PostClick(page, IDCANCEL);
        });
}

TEST_F(ProgressPageInARun, TellsTheTotalAndTheActionAtItsEnd)
{
    AddFolder(L"Inbox", L"Report", 2);
    state.actionName = L"Copy to folder...";

    Use(
        [&](ModalDriver& user, HWND page)
        {
            EXPECT_EQ(
                WaitForTheEnd(user, page),
                L"Total duplicates items: 2\n\nSelected Action: Copy to folder...\n\nProcess completed.");
            user.PostClick(page, IDCANCEL);
        });
}

TEST_F(ProgressPageInARun, LeavesTheListEmptyWhenItFindsNothing)
{
    AddFolder(L"Inbox", L"Alone", 0);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            EXPECT_EQ(
                WaitForTheEnd(user, page),
                L"Total duplicates items: 0\n\nSelected Action: Mark with the flag\n\nProcess completed.");
            EXPECT_THAT(RowsOf(page), IsEmpty());
            user.Click(page, 217);
            EXPECT_THAT(ShownDialogs(), ElementsAre(page));
            user.PostClick(page, IDCANCEL);
        });
}

TEST_F(ProgressPageInARun, LeavesNoHandlesBehindInTwoHundredRounds)
{
    constexpr int rounds = 200;
    AddFolder(L"Inbox", L"Report", 1);
    LoadTree();
    const std::vector<FOLDER_INFO> folders = state.folders;
    const auto show = [&]
    {
        state.folders = folders;
        CProcessProgressDlg dialog(state);
        Use(dialog,
            [&](ModalDriver& user, HWND page)
            {
                WaitForTheEnd(user, page);
                user.PostClick(page, IDCANCEL);
            });
    };
    // As many rounds go before: the system's own store of device contexts fills little by little.
    for (int round = 0; round < rounds; ++round)
        show();
    const HandleCounts before = HandleCounts::Now();

    for (int round = 0; round < rounds; ++round)
        show();

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
}
}    // namespace
