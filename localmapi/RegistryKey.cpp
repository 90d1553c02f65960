#include "localmapi/RegistryKey.h"

#include "localmapi/ComBoundary.h"

namespace
{
void ThrowUnlessDone(LSTATUS status)
{
    if (status != ERROR_SUCCESS)
        throw MapiError(HRESULT_FROM_WIN32(status));
}
}    // namespace

std::optional<RegistryKey> RegistryKey::Open(HKEY root, const std::wstring& path, REGSAM access)
{
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, access, &opened);
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND)
        return std::nullopt;
    ThrowUnlessDone(status);
    return RegistryKey(opened);
}

RegistryKey RegistryKey::Create(HKEY root, const std::wstring& path)
{
    HKEY created = nullptr;
    ThrowUnlessDone(RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                    KEY_READ | KEY_WRITE, nullptr, &created, nullptr));
    return RegistryKey(created);
}

void RegistryKey::DeleteTree(HKEY root, const std::wstring& path)
{
    const LSTATUS status = RegDeleteTreeW(root, path.c_str());
    if (status != ERROR_FILE_NOT_FOUND)
        ThrowUnlessDone(status);
}

std::optional<std::wstring> RegistryKey::ReadText(const std::wstring& name) const
{
    std::wstring text(MAX_PATH, L'\0');
    DWORD size = 0;
    LSTATUS status = ERROR_MORE_DATA;
    // Another process may make the value longer between two readings.
    while (status == ERROR_MORE_DATA)
    {
        size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        status = RegGetValueW(key.get(), nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (status == ERROR_MORE_DATA)
            text.resize(text.size() * 2);
    }
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_UNSUPPORTED_TYPE)
        return std::nullopt;
    ThrowUnlessDone(status);
    text.resize(size / sizeof(wchar_t) - 1);    // the size counts the terminator
    return text;
}

void RegistryKey::WriteText(const std::wstring& name, const std::wstring& text) const
{
    const DWORD size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    ThrowUnlessDone(RegSetValueExW(key.get(), name.c_str(), 0, REG_SZ,
                                   reinterpret_cast<const BYTE*>(text.c_str()), size));
}

void RegistryKey::DeleteValue(const std::wstring& name) const
{
    const LSTATUS status = RegDeleteValueW(key.get(), name.c_str());
    if (status != ERROR_FILE_NOT_FOUND)
        ThrowUnlessDone(status);
}
