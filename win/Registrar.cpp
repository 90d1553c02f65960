#include "win/Registrar.h"

#include "win/ClassesRoot.h"
#include "win/ComBoundary.h"
#include "win/ComInitialization.h"
#include "win/ModulePath.h"

#include <objbase.h>
#include <wrl/client.h>

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

constexpr wchar_t scriptType[] = L"REGISTRY";

// Inside a script every text stands between single quotes.
std::wstring QuotesDoubled(std::wstring text)
{
    for (std::size_t at = text.find(L'\''); at != std::wstring::npos; at = text.find(L'\'', at + 2))
        text.insert(at, 1, L'\'');
    return text;
}

HRESULT AddReplacements(IRegistrar* registrar, const ScriptReplacements& replacements)
{
    for (const auto& [name, text] : replacements)
    {
        const HRESULT added = registrar->AddReplacement(name.c_str(), QuotesDoubled(text).c_str());
        if (FAILED(added))
            return added;
    }
    return S_OK;
}

HRESULT MakeRegistrar(const std::wstring& path, const ScriptReplacements& replacements,
                      ComPtr<IRegistrar>& registrar)
{
    HRESULT result = ::CoCreateInstance(registrarClass, nullptr, CLSCTX_INPROC_SERVER, registrarInterface,
                                        reinterpret_cast<void**>(registrar.GetAddressOf()));
    if (SUCCEEDED(result))
        result = AddReplacements(registrar.Get(), {{L"MODULE", path}});
    return SUCCEEDED(result) ? AddReplacements(registrar.Get(), replacements) : result;
}
}    // namespace

HRESULT RunRegistryScript(UINT number, bool write, RegistrationScope scope,
                          const ScriptReplacements& replacements) noexcept
{
    return ComBoundary(
        [&]
        {
            const ComInitialization com;
            const std::wstring path = ThisModulePath();
            ComPtr<IRegistrar> registrar;
            const HRESULT made = MakeRegistrar(path, replacements, registrar);
            if (FAILED(made))
                return made;
            const ClassesRoot root(
                scope);    // only now: the registrar itself is found below HKEY_CLASSES_ROOT
            if (FAILED(root.GetResult()))
                return root.GetResult();
            return write ? registrar->ResourceRegister(path.c_str(), number, scriptType)
                         : registrar->ResourceUnregister(path.c_str(), number, scriptType);
        });
}
