#include "tests/ui/InstalledFolder.h"

namespace
{
const wchar_t keyPath[] = L"Software\\Talmorex\\Talmore Outlook Manager";
const wchar_t makerPath[] = L"Software\\Talmorex";
const wchar_t valueName[] = L"Path";
}    // namespace

InstallEntry::InstallEntry(HKEY root) : root(root)
{
    hadKey = static_cast<bool>(RegistryKey::Open(root, keyPath, KEY_READ));
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (::RegGetValueW(root, keyPath, valueName, RRF_RT_ANY | RRF_NOEXPAND, &type, nullptr, &size) !=
        ERROR_SUCCESS)
        return;
    before.emplace(Value{type, std::vector<BYTE>(size)});
    ::RegGetValueW(root, keyPath, valueName, RRF_RT_ANY | RRF_NOEXPAND, &type, before->data.data(), &size);
    before->data.resize(size);
}

InstallEntry::~InstallEntry()
{
    if (before)
        SetRaw(before->type, before->data.data(), static_cast<DWORD>(before->data.size()));
    else if (hadKey)
        Remove();
    else
        RemoveKey();
}

void InstallEntry::Set(const std::wstring& folder) const
{
    SetRaw(REG_SZ, folder.c_str(), static_cast<DWORD>((folder.size() + 1) * sizeof(wchar_t)));
}

void InstallEntry::SetRaw(DWORD type, const void* data, DWORD size) const
{
    // RegSetKeyValueW makes the key when it is not there.
    ::RegSetKeyValueW(root, keyPath, valueName, type, data, size);
}

void InstallEntry::Remove() const
{
    ::RegDeleteKeyValueW(root, keyPath, valueName);
}

void InstallEntry::RemoveKey() const
{
    ::RegDeleteKeyW(root, keyPath);
    // Refused while the maker has other products there.
    ::RegDeleteKeyW(root, makerPath);
}
