#pragma once

#include "win/Wnd.h"

#include <windows.h>

#include <string>

// A combo box; its entries are counted from 0.
class CComboBox : public CWnd
{
public:
    int AddString(const std::wstring& text) const;    // where it was put, or CB_ERR or CB_ERRSPACE
    int GetCount() const;
    int GetCurSel() const;                        // CB_ERR when nothing is selected
    void SetCurSel(int entry) const;              // -1 takes the selection away
    std::wstring GetItemText(int entry) const;    // empty when there is no such entry
};
