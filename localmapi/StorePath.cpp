#include "localmapi/StorePath.h"

#include "localmapi/RegistryKey.h"
#include "localmapi/TextConversion.h"

#include <windows.h>

#include <memory>

namespace
{
// An export of Wine's kernel32: the path's DOS name, in UTF-16, on the process heap.
using DosFileNameOf = wchar_t*(CDECL*)(const char* unixPath);

struct HeapDeleter
{
    void operator()(wchar_t* text) const noexcept { HeapFree(GetProcessHeap(), 0, text); }
};

std::wstring ReadEnvironment(const wchar_t* name)
{
    std::wstring text(MAX_PATH, L'\0');
    DWORD length = GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
    // Too short a buffer: the length then counts the terminator, and the variable may grow meanwhile.
    while (length >= text.size())
    {
        text.resize(length + 1);
        length = GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
    }
    text.resize(length);
    return text;
}

std::wstring DosPathOf(const std::wstring& path)
{
    if (path.front() != L'/')
        return path;
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto dosFileNameOf = reinterpret_cast<DosFileNameOf>(
        reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_dos_file_name")));
    if (!dosFileNameOf)
        return path;
    const std::unique_ptr<wchar_t, HeapDeleter> dosPath(dosFileNameOf(Utf8FromWide(path).c_str()));
    return dosPath ? dosPath.get() : path;
}
}    // namespace

std::optional<std::wstring> FindStorePath()
{
    const std::wstring named = ReadEnvironment(L"LOCALMAPI_STORE");
    if (!named.empty())
        return DosPathOf(named);
    const auto key = RegistryKey::Open(HKEY_CURRENT_USER, L"Software\\Talmorex\\LocalMapi");
    std::optional<std::wstring> path = key ? key->ReadText(L"Path") : std::nullopt;
    if (!path || path->empty())
        return std::nullopt;
    return DosPathOf(*path);
}
