#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

// Owns one open registry key. Every failure but a missing key or value throws MapiError with the Win32 code's
// HRESULT.
class RegistryKey
{
public:
    // Null when there is no such key.
    static std::optional<RegistryKey> Open(HKEY root, const std::wstring& path, REGSAM access = KEY_READ);
    static RegistryKey Create(HKEY root, const std::wstring& path);    // opens it when it is there

    // Removes the key with all below it; one that is not there is no failure.
    static void DeleteTree(HKEY root, const std::wstring& path);

    // A REG_SZ value, or a REG_EXPAND_SZ one expanded; an empty name is the key's default value. Null when
    // there is none of these types.
    std::optional<std::wstring> ReadText(const std::wstring& name) const;
    void WriteText(const std::wstring& name, const std::wstring& text) const;    // as REG_SZ
    void DeleteValue(const std::wstring& name) const;    // one not there is no failure

private:
    struct Closer
    {
        void operator()(HKEY key) const noexcept { RegCloseKey(key); }
    };

    explicit RegistryKey(HKEY key) : key(key) {}

    std::unique_ptr<std::remove_pointer_t<HKEY>, Closer> key;
};
