#include "win/ListCtrl.h"

#include "tests/win/ControlFixture.h"

#include <string>

namespace
{
class ListCtrl : public ControlFixture<CListCtrl>
{
protected:
    ListCtrl() : ControlFixture(WC_LISTVIEWW, LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS) {}

    void SetUp() override
    {
        ControlFixture::SetUp();
        control.InsertColumn(0, L"Folder Name", 130);
        control.InsertColumn(1, L"Subject", 90);
    }

    std::wstring TextAt(int row, int column) const
    {
        wchar_t text[100] = L"";
        LVITEMW read{};
        read.iSubItem = column;
        read.pszText = text;
        read.cchTextMax = ARRAYSIZE(text);
        Ask(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), &read);
        return text;
    }

    UINT StateOf(int row) const
    {
        return static_cast<UINT>(Ask(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LPARAM{0xFFFF}));
    }
};

TEST_F(ListCtrl, InsertsAColumnWithHeadingWidthAndAlignment)
{
    const int column = control.InsertColumn(2, L"Duplicate Count", 75, LVCFMT_RIGHT);

    wchar_t heading[100] = L"";
    LVCOLUMNW read{};
    read.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    read.pszText = heading;
    read.cchTextMax = ARRAYSIZE(heading);
    ASSERT_TRUE(Ask(LVM_GETCOLUMNW, 2, &read));
    EXPECT_EQ(column, 2);
    EXPECT_STREQ(heading, L"Duplicate Count");
    EXPECT_EQ(read.cx, 75);
    EXPECT_EQ(read.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_RIGHT);
}

TEST_F(ListCtrl, SetsTheExtendedStyleInPlaceOfTheOld)
{
    control.SetExtendedStyle(LVS_EX_GRIDLINES);

    control.SetExtendedStyle(LVS_EX_FULLROWSELECT);

    EXPECT_EQ(Ask(LVM_GETEXTENDEDLISTVIEWSTYLE), LVS_EX_FULLROWSELECT);
}

TEST_F(ListCtrl, InsertsARowWithItsTexts)
{
    const int row = control.InsertItem(0, L"Inbox");
    control.SetItemText(row, 1, L"Minutes");

    EXPECT_EQ(Ask(LVM_GETITEMCOUNT), 1);
    EXPECT_EQ(TextAt(0, 0), L"Inbox");
    EXPECT_EQ(TextAt(0, 1), L"Minutes");
}

TEST_F(ListCtrl, InsertsARowWhereItIsTold)
{
    control.InsertItem(0, L"Inbox");

    const int row = control.InsertItem(0, L"Outbox");

    EXPECT_EQ(row, 0);
    EXPECT_EQ(TextAt(0, 0), L"Outbox");
    EXPECT_EQ(TextAt(1, 0), L"Inbox");
}

TEST_F(ListCtrl, CountsItsRows)
{
    EXPECT_EQ(control.GetItemCount(), 0);

    control.InsertItem(0, L"Inbox");
    control.InsertItem(1, L"Outbox");

    EXPECT_EQ(control.GetItemCount(), 2);
}

TEST_F(ListCtrl, ReadsATextOfAnyLengthFromAnyColumn)
{
    control.InsertItem(0, L"Inbox");
    for (const std::size_t length : {0U, 1U, 126U, 127U, 128U, 255U, 259U, 1000U})
    {
        const std::wstring text(length, L'x');
        LVITEMW changed{};
        changed.iSubItem = 1;
        changed.pszText = const_cast<wchar_t*>(text.c_str());
        Ask(LVM_SETITEMTEXTW, 0, &changed);

        EXPECT_EQ(control.GetItemText(0, 1), text) << length << " characters";
    }
    EXPECT_EQ(control.GetItemText(0, 0), L"Inbox");
}

TEST_F(ListCtrl, HasNoTextWhereThereIsNoRow)
{
    EXPECT_EQ(control.GetItemText(4, 0), L"");
}

TEST_F(ListCtrl, SelectsARowInPlaceOfTheOneBefore)
{
    control.InsertItem(0, L"Inbox");
    control.InsertItem(1, L"Outbox");

    control.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    control.SetItemState(1, LVIS_SELECTED, LVIS_SELECTED);

    EXPECT_EQ(StateOf(0) & LVIS_SELECTED, 0U);
    EXPECT_EQ(StateOf(1) & LVIS_SELECTED, UINT{LVIS_SELECTED});
}

TEST_F(ListCtrl, ReadsOnlyTheStateBitsUnderTheMask)
{
    control.InsertItem(0, L"Inbox");
    control.SetItemState(0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);

    EXPECT_EQ(control.GetItemState(0, LVIS_FOCUSED | LVIS_CUT), UINT{LVIS_FOCUSED});
}

TEST_F(ListCtrl, ScrollsUntilARowIsVisible)
{
    for (int row = 0; row < 100; ++row)
        control.InsertItem(row, L"Inbox");
    ASSERT_EQ(Ask(LVM_GETTOPINDEX), 0);

    control.EnsureVisible(99);

    EXPECT_EQ(Ask(LVM_GETTOPINDEX) + Ask(LVM_GETCOUNTPERPAGE), 100);
}

TEST_F(ListCtrl, TakesColours)
{
    control.SetBkColor(RGB(1, 2, 3));
    control.SetTextColor(RGB(4, 5, 6));
    control.SetTextBkColor(RGB(7, 8, 9));

    EXPECT_EQ(static_cast<COLORREF>(Ask(LVM_GETBKCOLOR)), COLORREF{RGB(1, 2, 3)});
    EXPECT_EQ(static_cast<COLORREF>(Ask(LVM_GETTEXTCOLOR)), COLORREF{RGB(4, 5, 6)});
    EXPECT_EQ(static_cast<COLORREF>(Ask(LVM_GETTEXTBKCOLOR)), COLORREF{RGB(7, 8, 9)});
}
}    // namespace
