#include "quorvex/Registration.h"

#include "quorvex/MapiError.h"
#include "quorvex/ResourceIds.h"

#include <objbase.h>
#include <wrl/client.h>

#include <memory>
#include <string>

// The platform's registrar; none of its headers declares it. In no unnamed namespace: there the compiler
// would know that nobody implements it, and drop the calls.
struct IRegistrar : public IUnknown
{
    STDMETHOD(AddReplacement)(LPCOLESTR key, LPCOLESTR item) = 0;
    STDMETHOD(ClearReplacements)() = 0;
    STDMETHOD(ResourceRegisterSz)(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
    STDMETHOD(ResourceUnregisterSz)(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
    STDMETHOD(FileRegister)(LPCOLESTR file) = 0;
    STDMETHOD(FileUnregister)(LPCOLESTR file) = 0;
    STDMETHOD(StringRegister)(LPCOLESTR script) = 0;
    STDMETHOD(StringUnregister)(LPCOLESTR script) = 0;
    STDMETHOD(ResourceRegister)(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
    STDMETHOD(ResourceUnregister)(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
};

namespace
{
using Microsoft::WRL::ComPtr;

// The registrar of the system's atl.dll.
constexpr CLSID registrarClass = {
    0x44EC053A, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};
constexpr IID registrarInterface = {
    0x44EC053B, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};

constexpr const wchar_t* scriptType = L"REGISTRY";

// COM for the time of a registration, whatever apartment the caller has or has not made.
class ComForNow
{
public:
    ComForNow() noexcept : initialized(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComForNow()
    {
        if (initialized)
            CoUninitialize();
    }
    ComForNow(const ComForNow&) = delete;
    ComForNow& operator=(const ComForNow&) = delete;

private:
    const bool initialized;
};

struct RegistryKeyDeleter
{
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, RegistryKeyDeleter>;

// While it lives, what goes below HKEY_CLASSES_ROOT goes into the user's own classes.
class UserClasses
{
public:
    UserClasses()
    {
        HKEY opened = nullptr;
        CheckMapi(HRESULT_FROM_WIN32(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0,
                                                     KEY_READ | KEY_WRITE, nullptr, &opened, nullptr)),
                  L"open the user's classes in the registry");
        key.reset(opened);
        CheckMapi(HRESULT_FROM_WIN32(RegOverridePredefKey(HKEY_CLASSES_ROOT, opened)),
                  L"register for this user alone");
    }
    ~UserClasses() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    UserClasses(const UserClasses&) = delete;
    UserClasses& operator=(const UserClasses&) = delete;

private:
    RegistryKey key;
};

std::wstring ModulePath(HINSTANCE module)
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            CheckMapi(HRESULT_FROM_WIN32(GetLastError()), L"find this module's file");
        if (length < path.size())
        {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// Inside the script the path stands between single quotes.
std::wstring QuotesDoubled(std::wstring text)
{
    for (std::size_t at = text.find(L'\''); at != std::wstring::npos; at = text.find(L'\'', at + 2))
        text.insert(at, 1, L'\'');
    return text;
}

using ScriptMethod = HRESULT (STDMETHODCALLTYPE IRegistrar::*)(LPCOLESTR, UINT, LPCOLESTR);

void RunScript(HINSTANCE module, RegisterFor whom, ScriptMethod method)
{
    const ComForNow com;
    ComPtr<IRegistrar> registrar;
    CheckMapi(CoCreateInstance(registrarClass, nullptr, CLSCTX_INPROC_SERVER, registrarInterface,
                               reinterpret_cast<void**>(registrar.GetAddressOf())),
              L"create the platform's registrar");
    const std::wstring path = ModulePath(module);
    CheckMapi(registrar->AddReplacement(L"MODULE", QuotesDoubled(path).c_str()),
              L"prepare the registry script");

    // Only now: the registrar itself is found below HKEY_CLASSES_ROOT.
    std::unique_ptr<UserClasses> userClasses;
    if (whom == RegisterFor::User)
        userClasses = std::make_unique<UserClasses>();
    CheckMapi((registrar.Get()->*method)(path.c_str(), IDR_QUORVEX, scriptType), L"run the registry script");
}
}    // namespace

void RegisterServer(HINSTANCE module, RegisterFor whom)
{
    RunScript(module, whom, &IRegistrar::ResourceRegister);
}

void UnregisterServer(HINSTANCE module, RegisterFor whom)
{
    RunScript(module, whom, &IRegistrar::ResourceUnregister);
}
