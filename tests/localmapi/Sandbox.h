#pragma once

#include <windows.h>

#include <string>

// Sends what goes to `root` into a key of the test's own.
class RegistrySandbox
{
public:
    explicit RegistrySandbox(HKEY root) : root(root)
    {
        RegCreateKeyExW(HKEY_CURRENT_USER, sandboxPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &sandbox,
                        nullptr);
        RegOverridePredefKey(root, sandbox);
    }
    RegistrySandbox(const RegistrySandbox&) = delete;
    RegistrySandbox& operator=(const RegistrySandbox&) = delete;
    ~RegistrySandbox()
    {
        RegOverridePredefKey(root, nullptr);
        RegCloseKey(sandbox);
        RegDeleteTreeW(HKEY_CURRENT_USER, sandboxPath);
    }

private:
    static constexpr wchar_t sandboxPath[] = L"Software\\Talmorex\\LocalMapiTest";

    HKEY root;
    HKEY sandbox = nullptr;
};

// Sets LOCALMAPI_STORE for one test.
class StoreVariable
{
public:
    explicit StoreVariable(const wchar_t* value)
    {
        former.resize(GetEnvironmentVariableW(name, nullptr, 0));
        GetEnvironmentVariableW(name, former.data(), static_cast<DWORD>(former.size()));
        SetEnvironmentVariableW(name, value);
    }
    StoreVariable(const StoreVariable&) = delete;
    StoreVariable& operator=(const StoreVariable&) = delete;
    ~StoreVariable() { SetEnvironmentVariableW(name, former.empty() ? nullptr : former.c_str()); }

private:
    static constexpr wchar_t name[] = L"LOCALMAPI_STORE";
    std::wstring former;
};
