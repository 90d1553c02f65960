#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

// A button of any tool bar of a window, by its caption; without a bar when there is none.
struct FoundButton
{
    HWND bar = nullptr;
    TBBUTTON button{};
};

inline FoundButton FindButton(HWND window, const std::wstring& caption)
{
    for (HWND bar = nullptr; (bar = ::FindWindowExW(window, bar, TOOLBARCLASSNAMEW, nullptr)) != nullptr;)
    {
        const LRESULT count = ::SendMessageW(bar, TB_BUTTONCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i)
        {
            FoundButton found{bar, {}};
            wchar_t text[200] = L"";
            ::SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(i),
                           reinterpret_cast<LPARAM>(&found.button));
            ::SendMessageW(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(found.button.idCommand),
                           reinterpret_cast<LPARAM>(text));
            if (caption == text)
                return found;
        }
    }
    return {};
}
