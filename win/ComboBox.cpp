#include "win/ComboBox.h"

int CComboBox::AddString(const std::wstring& text) const
{
    return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

int CComboBox::GetCount() const
{
    return static_cast<int>(SendMessage(CB_GETCOUNT));
}

int CComboBox::GetCurSel() const
{
    return static_cast<int>(SendMessage(CB_GETCURSEL));
}

void CComboBox::SetCurSel(int entry) const
{
    SendMessage(CB_SETCURSEL, static_cast<WPARAM>(entry));
}

std::wstring CComboBox::GetItemText(int entry) const
{
    const LRESULT length = SendMessage(CB_GETLBTEXTLEN, static_cast<WPARAM>(entry));
    if (length == CB_ERR)
        return std::wstring();
    // The control writes the terminating zero as well.
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessage(CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    return text;
}
