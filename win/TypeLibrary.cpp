#include "win/TypeLibrary.h"

#include "win/ClassesRoot.h"
#include "win/ComBoundary.h"
#include "win/ModuleHandle.h"
#include "win/ModulePath.h"
#include "win/ThisModule.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <string>

namespace
{
using Microsoft::WRL::ComPtr;

struct TypeLibraryAttributes
{
    explicit TypeLibraryAttributes(ITypeLib* library) noexcept : library(library)
    {
        library->GetLibAttr(&attributes);
    }
    TypeLibraryAttributes(const TypeLibraryAttributes&) = delete;
    TypeLibraryAttributes& operator=(const TypeLibraryAttributes&) = delete;
    ~TypeLibraryAttributes()
    {
        if (attributes)
            library->ReleaseTLibAttr(attributes);
    }

    ITypeLib* const library;
    TLIBATTR* attributes = nullptr;
};

bool Is(ITypeLib* candidate, const GUID& library, WORD major, WORD minor) noexcept
{
    const TypeLibraryAttributes found(candidate);
    return found.attributes && found.attributes->guid == library && found.attributes->wMajorVerNum == major &&
           found.attributes->wMinorVerNum >= minor;
}

bool HasTypeLibrary(WORD number) noexcept
{
    return ::FindResourceW(ThisModule(), MAKEINTRESOURCEW(number), L"TYPELIB") != nullptr;
}

// OLEAUT32.DLL's function of that name: which ones it has depends on the system's age.
template <class Function>
HRESULT CallAutomation(const char* name, Function&& call) noexcept
{
    const ModuleHandle automation(::LoadLibraryExW(L"OLEAUT32.DLL", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    if (!automation)
        return HRESULT_FROM_WIN32(::GetLastError());
    const FARPROC found = ::GetProcAddress(automation.get(), name);
    return found ? call(found) : HRESULT_FROM_WIN32(::GetLastError());
}

template <class Signature>
Signature* As(FARPROC function) noexcept
{
    return reinterpret_cast<Signature*>(reinterpret_cast<void (*)()>(function));
}

HRESULT Register(ITypeLib* library, const std::wstring& path, RegistrationScope scope) noexcept
{
    // Not every system's RegisterTypeLibForUser keeps to the user's classes by itself.
    const ClassesRoot root(scope);
    if (FAILED(root.GetResult()))
        return root.GetResult();
    const char* name = scope == RegistrationScope::User ? "RegisterTypeLibForUser" : "RegisterTypeLib";
    return CallAutomation(name,
                          [&](FARPROC function)
                          {
                              return As<HRESULT WINAPI(ITypeLib*, OLECHAR*, OLECHAR*)>(function)(
                                  library, const_cast<wchar_t*>(path.c_str()), nullptr);
                          });
}
}    // namespace

HRESULT LoadOwnTypeLibrary(const GUID& library, WORD major, WORD minor, ITypeLib** result) noexcept
{
    *result = nullptr;
    return ComBoundary(
        [&]() -> HRESULT
        {
            const std::wstring path = ThisModulePath();
            for (WORD number = 1; HasTypeLibrary(number); ++number)
            {
                ComPtr<ITypeLib> candidate;
                const std::wstring resource = path + L'\\' + std::to_wstring(number);
                if (SUCCEEDED(::LoadTypeLibEx(resource.c_str(), REGKIND_NONE, candidate.GetAddressOf())) &&
                    Is(candidate.Get(), library, major, minor))
                    return candidate.CopyTo(result);
            }
            return TYPE_E_CANTLOADLIBRARY;
        });
}

HRESULT RegisterOwnTypeLibrary(RegistrationScope scope) noexcept
{
    return ComBoundary(
        [&]
        {
            const std::wstring path = ThisModulePath();
            ComPtr<ITypeLib> library;
            const HRESULT loaded = ::LoadTypeLib(path.c_str(), library.GetAddressOf());
            return SUCCEEDED(loaded) ? Register(library.Get(), path, scope) : loaded;
        });
}

HRESULT UnregisterOwnTypeLibrary(RegistrationScope scope) noexcept
{
    return ComBoundary(
        [&]
        {
            ComPtr<ITypeLib> library;
            const HRESULT loaded = ::LoadTypeLib(ThisModulePath().c_str(), library.GetAddressOf());
            if (FAILED(loaded))
                return loaded;
            const TypeLibraryAttributes found(library.Get());
            if (!found.attributes)
                return TYPE_E_INVALIDSTATE;
            const ClassesRoot root(scope);
            if (FAILED(root.GetResult()))
                return root.GetResult();
            const TLIBATTR& own = *found.attributes;
            return CallAutomation("UnRegisterTypeLib",
                                  [&](FARPROC function)
                                  {
                                      return As<HRESULT WINAPI(REFGUID, WORD, WORD, LCID, SYSKIND)>(function)(
                                          own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid,
                                          own.syskind);
                                  });
        });
}
