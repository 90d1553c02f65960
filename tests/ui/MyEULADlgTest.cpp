#include "ui/MyEULADlg.h"

#include "res/resource.h"
#include "tests/ui/DialogProbe.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/ui/ModalDriver.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const COLORREF lightYellow = RGB(255, 245, 196);
const wchar_t title[] = L"End User License Agreement";

class LicenceViewer : public testing::Test
{
protected:
    InstallEntry entry;
    TemporaryFolder folder;

    void SetUp() override { entry.Set(folder.Path()); }

    using Look = std::function<void(ModalDriver&, HWND)>;

    // Shows the dialog, lets `look` use it as the user does, and presses Close.
    static INT_PTR Show(const Look& look)
    {
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND viewer = self.WaitForDialog(title, IDC_EULA_LINES);
                look(self, viewer);
                self.Click(viewer, IDOK);
            });
        return CMyEULADlg().DoModal();
    }

    INT_PTR ShowFile(const std::string& bytes, const Look& look) const
    {
        folder.Write(L"eula.dat", bytes);
        return Show(look);
    }

    static INT_PTR ShowAndPress(WORD key)
    {
        ModalDriver user([&](ModalDriver& self) { self.PressKey(self.WaitForDialog(title), key); });
        return CMyEULADlg().DoModal();
    }

    static std::vector<std::wstring> RowsOf(HWND viewer)
    {
        const HWND list = ::GetDlgItem(viewer, 247);
        std::vector<std::wstring> rows;
        for (int row = 0; row < ListView_GetItemCount(list); ++row)
        {
            std::wstring text(1000, L'\0');
            ListView_GetItemText(list, row, 0, text.data(), static_cast<int>(text.size()));
            rows.emplace_back(text.c_str());
        }
        return rows;
    }

    static std::vector<COLORREF> PixelsOfRow(HWND list, int row)
    {
        RECT place{};
        ListView_GetItemRect(list, row, &place, LVIR_BOUNDS);
        return PixelsDrawnBy(list, place);
    }

    static std::vector<std::wstring> RowsShown()
    {
        std::vector<std::wstring> rows;
        Show([&](ModalDriver&, HWND viewer) { rows = RowsOf(viewer); });
        return rows;
    }
};

TEST_F(LicenceViewer, IsAsLargeAsItsTemplateSays)
{
    Show(
        [](ModalDriver&, HWND viewer)
        {
            EXPECT_EQ(ClientSizeOf(viewer), PixelsOf(viewer, 340, 262));
            EXPECT_THAT(LayoutFaultsOf(viewer), IsEmpty());
            EXPECT_EQ(TextOf(::GetDlgItem(viewer, 1)), L"Close");
        });
}

TEST_F(LicenceViewer, ShowsOneColumnWithoutAHeading)
{
    ShowFile("line",
             [](ModalDriver&, HWND viewer)
             {
                 const HWND list = ::GetDlgItem(viewer, 247);
                 const LONG_PTR style = ::GetWindowLongPtrW(list, GWL_STYLE);
                 EXPECT_EQ(style & LVS_TYPEMASK, LVS_REPORT);
                 EXPECT_TRUE(style & LVS_NOCOLUMNHEADER);
                 EXPECT_EQ(Header_GetItemCount(ListView_GetHeader(list)), 1);
                 EXPECT_EQ(ListView_GetColumnWidth(list, 0),
                           ::MulDiv(505, static_cast<int>(::GetDpiForWindow(viewer)), 96));
             });
}

TEST_F(LicenceViewer, ShowsEachLineOfTheFileInOrder)
{
    folder.Write(L"eula.dat", "LICENCE\r\n\r\n  1. Grant\n\tYou may.\nB\xC3\xA4r & Co\r\n");

    EXPECT_THAT(RowsShown(), ElementsAre(L"LICENCE", L"", L"  1. Grant", L"    You may.", L"B\u00E4r & Co"));
}

TEST_F(LicenceViewer, ReadsTheFileAnewEachTime)
{
    folder.Write(L"eula.dat", "first");
    RowsShown();
    folder.Write(L"eula.dat", "second");

    EXPECT_THAT(RowsShown(), ElementsAre(L"second"));
}

TEST_F(LicenceViewer, IsEmptyWithoutTheFile)
{
    EXPECT_THAT(RowsShown(), IsEmpty());
}

TEST_F(LicenceViewer, IsEmptyWithoutTheFolder)
{
    entry.Set(folder.Path() + L"\\missing");

    EXPECT_THAT(RowsShown(), IsEmpty());
}

TEST_F(LicenceViewer, IsEmptyWithoutTheRegistrysEntry)
{
    folder.Write(L"eula.dat", "line");
    entry.Remove();
    EXPECT_THAT(RowsShown(), IsEmpty());

    entry.RemoveKey();
    EXPECT_THAT(RowsShown(), IsEmpty());
}

TEST_F(LicenceViewer, SaysNothingOfAMissingFile)
{
    Show([](ModalDriver&, HWND viewer) { EXPECT_THAT(ShownDialogs(), ElementsAre(viewer)); });
}

TEST_F(LicenceViewer, FindsFoldersOfAnyLength)
{
    std::wstring deep = folder.Path();
    while (deep.size() < 140)
        deep += L"\\agreement";
    std::filesystem::create_directories(deep);
    std::ofstream(std::filesystem::path(deep) / L"eula.dat") << "deep";
    entry.Set(deep);

    EXPECT_THAT(RowsShown(), ElementsAre(L"deep"));
}

TEST_F(LicenceViewer, OpensAtOnceWithMillionsOfLines)
{
    const auto start = std::chrono::steady_clock::now();
    int count = 0;

    ShowFile(std::string(10 * 1024 * 1024, '\n'),
             [&](ModalDriver&, HWND viewer)
             {
                 const HWND list = ::GetDlgItem(viewer, 247);
                 count = ListView_GetItemCount(list);
                 ListView_EnsureVisible(list, count - 1, FALSE);
                 ::RedrawWindow(list, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
             });

    EXPECT_EQ(count, 10 * 1024 * 1024);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST_F(LicenceViewer, ShowsTheStartOfALineOfAnyLength)
{
    const std::string line(10 * 1024 * 1024, 'x');

    ShowFile(line + "\nend",
             [](ModalDriver&, HWND viewer)
             {
                 ::RedrawWindow(viewer, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
                 EXPECT_THAT(RowsOf(viewer), ElementsAre(std::wstring(999, L'x'), L"end"));
             });
}

TEST_F(LicenceViewer, HasAWhiteListOnYellow)
{
    ShowFile("line",
             [](ModalDriver&, HWND viewer)
             {
                 const Colours dialog = ColoursOf(viewer, WM_CTLCOLORDLG, viewer);
                 const Colours button = ColoursOf(viewer, WM_CTLCOLORBTN, ::GetDlgItem(viewer, IDOK));
                 EXPECT_EQ(dialog.brush, lightYellow);
                 EXPECT_EQ(button.brush, lightYellow);
                 EXPECT_EQ(button.textBackground, lightYellow);
                 EXPECT_EQ(ListView_GetBkColor(::GetDlgItem(viewer, 247)), RGB(255, 255, 255));
             });
}

TEST_F(LicenceViewer, ShowsRowsBlackOnWhiteEvenWhenTheyAreSelected)
{
    std::vector<COLORREF> plain;
    std::vector<COLORREF> selected;

    ShowFile("####\n####\n",
             [&](ModalDriver& user, HWND viewer)
             {
                 const HWND list = ::GetDlgItem(viewer, 247);
                 user.PressKey(viewer, VK_TAB);
                 user.WaitUntil([&] { return user.FocusOf(viewer) == list; }, "the focus on the list");
                 plain = PixelsOfRow(list, 1);
                 ListView_SetItemState(list, 1, LVIS_SELECTED, LVIS_SELECTED);
                 selected = PixelsOfRow(list, 1);
             });

    const auto countOf = [&](COLORREF colour)
    { return std::count(selected.begin(), selected.end(), colour); };
    EXPECT_TRUE(selected == plain);
    EXPECT_GT(countOf(RGB(0, 0, 0)), 0);
    EXPECT_GT(countOf(RGB(255, 255, 255)), static_cast<std::ptrdiff_t>(selected.size() / 2));
}

TEST_F(LicenceViewer, IsClosedByItsButtonAndKeys)
{
    EXPECT_EQ(Show([](ModalDriver&, HWND) {}), IDOK);
    EXPECT_EQ(ShowAndPress(VK_RETURN), IDOK);
    EXPECT_EQ(ShowAndPress(VK_SPACE), IDOK);
    EXPECT_EQ(ShowAndPress(VK_ESCAPE), IDCANCEL);
}

TEST_F(LicenceViewer, GoesFromTheButtonToTheListByTab)
{
    ShowFile("one\ntwo\n",
             [](ModalDriver& user, HWND viewer)
             {
                 const HWND list = ::GetDlgItem(viewer, 247);
                 EXPECT_THAT(TabOrderOf(viewer), ElementsAre(IDOK, 247));
                 EXPECT_EQ(user.FocusOf(viewer), ::GetDlgItem(viewer, IDOK));
                 user.PressKey(viewer, VK_TAB);
                 user.WaitUntil([&] { return user.FocusOf(viewer) == list; }, "the focus on the list");
                 user.PressKey(viewer, VK_END);
                 user.WaitUntil([&] { return ListView_GetNextItem(list, -1, LVNI_FOCUSED) == 1; },
                                "the focus on the last row");
             });
}
}    // namespace
