#include "console/OutputStream.h"

#include <algorithm>

OutputStream::OutputStream(HANDLE handle) : handle(handle)
{
    DWORD mode = 0;
    isTerminal = GetConsoleMode(handle, &mode) != FALSE;
}

int OutputStream::GetColumns() const
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!isTerminal || !GetConsoleScreenBufferInfo(handle, &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

void OutputStream::Write(std::wstring_view text)
{
    if (isTerminal)
        WriteToTerminal(text);
    else
        WriteBytes(ToUtf8(text));
}

void OutputStream::WriteLine(std::wstring_view text)
{
    Write(std::wstring(text) + L'\n');
}

void OutputStream::WriteToTerminal(std::wstring_view text)
{
    // Older consoles refuse more than 64 KB in one call.
    constexpr std::size_t most = 8192;
    while (!text.empty() && !hasFailed)
    {
        DWORD written = 0;
        const std::size_t part = std::min(text.size(), most);
        hasFailed =
            !WriteConsoleW(handle, text.data(), static_cast<DWORD>(part), &written, nullptr) || written == 0;
        text.remove_prefix(hasFailed ? 0 : written);
    }
}

void OutputStream::WriteBytes(std::string_view bytes)
{
    while (!bytes.empty() && !hasFailed)
    {
        DWORD written = 0;
        hasFailed = !WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
                    written == 0;
        bytes.remove_prefix(hasFailed ? 0 : written);
    }
}

std::string ToUtf8(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), needed, nullptr, nullptr);
    return bytes;
}
