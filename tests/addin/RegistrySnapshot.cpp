#include "tests/addin/RegistrySnapshot.h"

#include <windows.h>

#include <algorithm>
#include <cwctype>
#include <vector>

namespace
{
using Entries = RegistrySnapshot::Entries;

constexpr DWORD longestName = 16384;

std::wstring LowerCase(std::wstring text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t letter) { return std::towlower(letter); });
    return text;
}

std::wstring DataText(DWORD type, const std::vector<BYTE>& data)
{
    if (type == REG_DWORD && data.size() == sizeof(DWORD))
        return L"dword " + std::to_wstring(*reinterpret_cast<const DWORD*>(data.data()));
    if (type == REG_SZ || type == REG_EXPAND_SZ)
    {
        std::wstring text(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
        while (!text.empty() && text.back() == L'\0')
            text.pop_back();
        return text;
    }
    return std::wstring(data.begin(), data.end());
}

void AddValues(HKEY key, const std::wstring& path, Entries& entries)
{
    std::vector<wchar_t> name(longestName);
    std::vector<BYTE> data(65536);
    for (DWORD index = 0;; ++index)
    {
        DWORD nameLength = longestName;
        DWORD size = static_cast<DWORD>(data.size());
        DWORD type = REG_NONE;
        const LSTATUS read =
            ::RegEnumValueW(key, index, name.data(), &nameLength, nullptr, &type, data.data(), &size);
        if (read != ERROR_SUCCESS)
            return;
        entries[path + L'|' + name.data()] = DataText(type, {data.begin(), data.begin() + size});
    }
}

void AddKey(HKEY parent, const std::wstring& name, const std::wstring& path, Entries& entries)
{
    HKEY key = nullptr;
    if (::RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    entries[path];
    AddValues(key, path, entries);
    wchar_t child[256];
    for (DWORD index = 0, length = ARRAYSIZE(child);
         ::RegEnumKeyExW(key, index, child, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = ARRAYSIZE(child))
        AddKey(key, child, path + L'\\' + LowerCase(child), entries);
    ::RegCloseKey(key);
}
}    // namespace

RegistrySnapshot RegistrySnapshot::Take()
{
    RegistrySnapshot snapshot;
    AddKey(HKEY_LOCAL_MACHINE, L"Software\\Classes", L"hklm\\software\\classes", snapshot.entries);
    AddKey(HKEY_CURRENT_USER, L"Software", L"hkcu\\software", snapshot.entries);
    return snapshot;
}

RegistrySnapshot::Entries RegistrySnapshot::Since(const RegistrySnapshot& before) const
{
    Entries changed;
    for (const auto& [path, data] : entries)
    {
        const auto old = before.entries.find(path);
        if ((old == before.entries.end() || old->second != data) &&
            path.find(L"\\wow6432node\\") == path.npos)
            changed[path] = data;
    }
    return changed;
}
