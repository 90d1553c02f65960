#include "win/RegistryKey.h"

#include <string_view>

namespace
{
bool EndsAsItsTypeAsks(std::wstring_view data, DWORD type)
{
    using namespace std::literals;
    switch (type)
    {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return data.ends_with(L'\0');
    case REG_MULTI_SZ:
        return data.ends_with(L"\0\0"sv);
    default:
        return false;
    }
}
}    // namespace

RegistryKey RegistryKey::Open(HKEY root, const std::wstring& path, REGSAM access) noexcept
{
    RegistryKey opened;
    HKEY key = nullptr;
    if (::RegOpenKeyExW(root, path.c_str(), 0, access, &key) == ERROR_SUCCESS)
        opened.key.reset(key);
    return opened;
}

RegistryKey RegistryKey::Create(HKEY root, const std::wstring& path, REGSAM access) noexcept
{
    RegistryKey created;
    HKEY key = nullptr;
    if (::RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &key,
                          nullptr) == ERROR_SUCCESS)
        created.key.reset(key);
    return created;
}

std::wstring RegistryKey::QueryString(const std::wstring& name, DWORD size) const
{
    std::wstring data(size / sizeof(wchar_t), L'\0');
    DWORD type = REG_NONE;
    DWORD length = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    const LSTATUS read = ::RegQueryValueExW(key.get(), name.c_str(), nullptr, &type,
                                            reinterpret_cast<BYTE*>(data.data()), &length);
    if (read != ERROR_SUCCESS || length % sizeof(wchar_t) != 0)
        return std::wstring();
    data.resize(length / sizeof(wchar_t));
    return EndsAsItsTypeAsks(data, type) ? std::wstring(data.c_str()) : std::wstring();
}
