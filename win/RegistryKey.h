#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

struct RegistryKeyCloser
{
    void operator()(HKEY key) const noexcept { ::RegCloseKey(key); }
};

// Owns one open registry key.
class RegistryKey
{
public:
    RegistryKey() noexcept = default;

    // Empty when there is no such key, or it may not be opened with that access (KEY_...).
    static RegistryKey Open(HKEY root, const std::wstring& path, REGSAM access) noexcept;

    // The same for a key that is made where it is missing, with all above it.
    static RegistryKey Create(HKEY root, const std::wstring& path, REGSAM access) noexcept;

    explicit operator bool() const noexcept { return key != nullptr; }
    HKEY get() const noexcept { return key.get(); }    // borrowed

    // The text of a value, up to its first zero, as it stands: variables in it are not expanded. Empty when
    // there is none, when it takes more than `size` bytes with its zeros, or when it is no string that ends
    // as its type asks for: with a zero (REG_SZ, REG_EXPAND_SZ) or with two (REG_MULTI_SZ).
    std::wstring QueryString(const std::wstring& name, DWORD size) const;

private:
    std::unique_ptr<std::remove_pointer_t<HKEY>, RegistryKeyCloser> key;
};
