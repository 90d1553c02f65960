#include "win/ListCtrl.h"

#include "win/ControlText.h"

void CListCtrl::SetExtendedStyle(DWORD style) const
{
    SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style));
}

int CListCtrl::InsertColumn(int column, const std::wstring& heading, int width, int format) const
{
    LVCOLUMNW inserted{};
    inserted.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    inserted.pszText = const_cast<wchar_t*>(heading.c_str());
    inserted.cx = width;
    inserted.fmt = format;
    inserted.iSubItem = column;
    return static_cast<int>(
        SendMessage(LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&inserted)));
}

int CListCtrl::InsertItem(int row, const std::wstring& text) const
{
    LVITEMW inserted{};
    inserted.mask = LVIF_TEXT;
    inserted.iItem = row;
    inserted.pszText = const_cast<wchar_t*>(text.c_str());
    return static_cast<int>(SendMessage(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&inserted)));
}

int CListCtrl::GetItemCount() const
{
    return static_cast<int>(SendMessage(LVM_GETITEMCOUNT));
}

void CListCtrl::SetItemText(int row, int column, const std::wstring& text) const
{
    LVITEMW changed{};
    changed.iSubItem = column;
    changed.pszText = const_cast<wchar_t*>(text.c_str());
    SendMessage(LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&changed));
}

std::wstring CListCtrl::GetItemText(int row, int column) const
{
    return ReadControlText(
        [&](wchar_t* buffer, int capacity) -> const wchar_t*
        {
            LVITEMW wanted{};
            wanted.iSubItem = column;
            wanted.pszText = buffer;
            wanted.cchTextMax = capacity;
            SendMessage(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&wanted));
            return wanted.pszText;
        });
}

void CListCtrl::SetItemState(int row, UINT state, UINT mask) const
{
    LVITEMW changed{};
    changed.state = state;
    changed.stateMask = mask;
    SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&changed));
}

UINT CListCtrl::GetItemState(int row, UINT mask) const
{
    return static_cast<UINT>(SendMessage(LVM_GETITEMSTATE, static_cast<WPARAM>(row), mask));
}

void CListCtrl::EnsureVisible(int row) const
{
    SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void CListCtrl::SetBkColor(COLORREF colour) const
{
    SendMessage(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(colour));
}

void CListCtrl::SetTextColor(COLORREF colour) const
{
    SendMessage(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(colour));
}

void CListCtrl::SetTextBkColor(COLORREF colour) const
{
    SendMessage(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(colour));
}
