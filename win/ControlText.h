#pragma once

#include <windows.h>

#include <cstddef>
#include <cwchar>
#include <string>

// A control's text of any length, where the control only fills the buffer that it is given.
// `const wchar_t* read(wchar_t* buffer, int capacity)` asks for the text, cut to the capacity with its zero;
// it returns where the text is, the buffer or the control's own place, or null when there is none.
template <typename Read>
std::wstring ReadControlText(Read&& read)
{
    for (std::wstring buffer(128, L'\0');; buffer.resize(2 * buffer.size()))
    {
        const wchar_t* text = read(buffer.data(), static_cast<int>(buffer.size()));
        if (!text)
            return std::wstring();
        const std::size_t length = std::wcslen(text);
        if (text != buffer.data() || length + 1 < buffer.size())
            return std::wstring(text, length);
    }
}
