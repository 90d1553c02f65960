#pragma once

#include "win/Wnd.h"

#include <windows.h>

#include <commctrl.h>

#include <string>

// A list view in report view. Rows and columns are counted from 0; state bits are LVIS_....
class CListCtrl : public CWnd
{
public:
    void SetExtendedStyle(DWORD style) const;    // LVS_EX_..., in place of all that were set

    // Returns where the column or row was put, or -1 when it is refused.
    int InsertColumn(int column, const std::wstring& heading, int width, int format = LVCFMT_LEFT) const;
    int InsertItem(int row, const std::wstring& text) const;
    int GetItemCount() const;

    void SetItemText(int row, int column, const std::wstring& text) const;
    std::wstring GetItemText(int row, int column) const;
    void SetItemState(int row, UINT state, UINT mask) const;
    UINT GetItemState(int row, UINT mask) const;
    void EnsureVisible(int row) const;    // the whole row

    void SetBkColor(COLORREF colour) const;
    void SetTextColor(COLORREF colour) const;
    void SetTextBkColor(COLORREF colour) const;
};
