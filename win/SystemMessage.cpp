#include "win/SystemMessage.h"

#include <array>
#include <cwchar>

std::wstring SystemMessage(DWORD code)
{
    std::array<wchar_t, 512> buffer{};
    // The width mask keeps the text on one line.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        code, 0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    std::wstring text(buffer.data(), length);
    text.erase(text.find_last_not_of(L" .\r\n") + 1);
    if (!text.empty())
        return text;
    const int digits = std::swprintf(buffer.data(), buffer.size(), L"error 0x%08lX", code);
    return std::wstring(buffer.data(), static_cast<std::size_t>(digits));
}
