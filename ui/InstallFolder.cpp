#include "ui/InstallFolder.h"

#include "win/RegistryKey.h"

namespace
{
constexpr DWORD longestPath = 32767 * sizeof(wchar_t);    // in bytes, as the next
constexpr DWORD longestPathOfHelp = 260;

std::wstring ReadFolder(REGSAM access, DWORD size)
{
    const RegistryKey key =
        RegistryKey::Open(HKEY_LOCAL_MACHINE, L"Software\\Talmorex\\Talmore Outlook Manager", access);
    return key ? key.QueryString(L"Path", size) : std::wstring();
}
}    // namespace

std::wstring InstallFolder()
{
    return ReadFolder(KEY_READ, longestPath);
}

std::wstring InstallFolderOfHelp()
{
    return ReadFolder(KEY_READ | KEY_WRITE, longestPathOfHelp);
}
