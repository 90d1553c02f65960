#include "tests/setup/RegistryImage.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace
{
using Entries = RegistryImage::Entries;

// Who saves the registry needs the right to back the machine up, which an administrator has but does not use
// unasked.
void AllowBackup()
{
    HANDLE token = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &token))
        return;
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    if (::LookupPrivilegeValueW(nullptr, SE_BACKUP_NAME, &privileges.Privileges[0].Luid))
        ::AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr);
    ::CloseHandle(token);
}

std::string Save(HKEY root)
{
    const std::filesystem::path file = std::filesystem::temp_directory_path() / L"tqodr-registry-image";
    std::filesystem::remove(file);
    HKEY key = nullptr;
    ::RegOpenKeyExW(root, L"Software", 0, KEY_READ, &key);
    const LSTATUS saved = ::RegSaveKeyW(key, file.c_str(), nullptr);
    ::RegCloseKey(key);
    if (saved != ERROR_SUCCESS)
        throw std::runtime_error("the registry cannot be saved");
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    stream.close();
    std::filesystem::remove(file);
    return text;
}

std::wstring KeyOf(const std::string& line)
{
    std::wstring key;
    for (std::size_t at = 1; at < line.rfind(']'); ++at)
    {
        if (line[at] == '\\')
            ++at;    // a backslash is written twice
        key += static_cast<wchar_t>(line[at]);
    }
    return key;
}

// The text's form: a key in brackets with its time, lines beginning with # for its kind and times, then its
// values, where a backslash at the end of a line of numbers leads on to the next.
void AddEntries(const std::string& text, const std::wstring& root, Entries& entries)
{
    std::wstring key = root;
    std::wstring value;
    std::size_t end = 0;
    for (std::size_t begin = 0; begin < text.size(); begin = end + 1)
    {
        end = std::min(text.find('\n', begin), text.size());
        std::string line = text.substr(begin, end - begin);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.starts_with('['))
        {
            const std::wstring below = KeyOf(line);
            key = below.empty() ? root : root + L"\\" + below;
            entries.insert(key);
        }
        else if (line.starts_with('"') || line.starts_with('@') || !value.empty())
        {
            value.append(line.begin(), line.end());
            if (value.ends_with(L'\\'))
                continue;
            entries.insert(key + L"|" + value);
            value.clear();
        }
    }
}
}    // namespace

RegistryImage RegistryImage::Take()
{
    AllowBackup();
    RegistryImage image;
    AddEntries(Save(HKEY_LOCAL_MACHINE), L"HKLM\\Software", image.entries);
    AddEntries(Save(HKEY_CURRENT_USER), L"HKCU\\Software", image.entries);
    // Wine's settings for programs, which it writes itself while programs run.
    std::erase_if(image.entries,
                  [](const std::wstring& entry) { return entry.starts_with(L"HKCU\\Software\\Wine\\"); });
    return image;
}

Entries RegistryImage::Since(const RegistryImage& before) const
{
    Entries changed;
    std::set_difference(entries.begin(), entries.end(), before.entries.begin(), before.entries.end(),
                        std::inserter(changed, changed.end()));
    return changed;
}

std::wstring RegistryText(HKEY root, const std::wstring& key, const wchar_t* name)
{
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    ::RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

void SetRegistryText(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text)
{
    ::RegSetKeyValueW(root, key.c_str(), name, REG_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}
