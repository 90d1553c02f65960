#include "explorer/StandardStream.h"

#include <windows.h>

void WriteTo(DWORD stream, const std::wstring& text)
{
    // A program with windows has no console of its own, but may borrow its parent's.
    if (!::GetStdHandle(stream))
        ::AttachConsole(ATTACH_PARENT_PROCESS);
    const HANDLE handle = ::GetStdHandle(stream);
    if (!handle || handle == INVALID_HANDLE_VALUE)
        return;
    const int length = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr,
                                                                     0, nullptr, nullptr)),
                      '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()),
                          nullptr, nullptr);
    DWORD written = 0;
    ::WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}
