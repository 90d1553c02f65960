#include "ui/InstallFolder.h"

#include "win/RegistryKey.h"

namespace
{
constexpr DWORD longestPath = 32767 * sizeof(wchar_t);    // in bytes, as the next
constexpr DWORD longestPathOfHelp = 260;

std::wstring ReadFolder(HKEY root, REGSAM access, DWORD size)
{
    const RegistryKey key = RegistryKey::Open(root, L"Software\\Talmorex\\Talmore Outlook Manager", access);
    return key ? key.QueryString(L"Path", size) : std::wstring();
}
}    // namespace

std::wstring InstallFolder()
{
    std::wstring folder = ReadFolder(HKEY_LOCAL_MACHINE, KEY_READ, longestPath);
    if (folder.empty())
        folder = ReadFolder(HKEY_CURRENT_USER, KEY_READ, longestPath);
    return folder;
}

std::wstring InstallFolderOfHelp()
{
    std::wstring folder = ReadFolder(HKEY_LOCAL_MACHINE, KEY_READ | KEY_WRITE, longestPathOfHelp);
    if (folder.empty())
        folder = ReadFolder(HKEY_CURRENT_USER, KEY_READ, longestPathOfHelp);
    // A user who may not change the machine's entry has help by it all the same.
    if (folder.empty())
        folder = ReadFolder(HKEY_LOCAL_MACHINE, KEY_READ, longestPathOfHelp);
    return folder;
}
