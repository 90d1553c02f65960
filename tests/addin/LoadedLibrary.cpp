#include "tests/addin/LoadedLibrary.h"

#include <cstdlib>

LoadedLibrary::LoadedLibrary()
{
    const char* dist = std::getenv("TQODR_DIST");
    const std::string path =
        std::string("Z:") + (dist ? dist : ".") + "/TalmoreQuorvexOutlookDuplicateRemover.dll";
    module = ::LoadLibraryA(path.c_str());
}

LoadedLibrary::~LoadedLibrary()
{
    if (module)
        ::FreeLibrary(module);
}

std::wstring LoadedLibrary::Path() const
{
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(module, path, MAX_PATH);
    return path;
}

std::wstring LoadedLibrary::Folder() const
{
    const std::wstring path = Path();
    return path.substr(0, path.rfind(L'\\'));
}

HRESULT LoadedLibrary::Install(bool install, const wchar_t* commandLine) const
{
    return Export<HRESULT WINAPI(BOOL, LPCWSTR)>("DllInstall")(install, commandLine);
}

HRESULT LoadedLibrary::Register() const
{
    return Export<HRESULT WINAPI()>("DllRegisterServer")();
}

HRESULT LoadedLibrary::Unregister() const
{
    return Export<HRESULT WINAPI()>("DllUnregisterServer")();
}

HRESULT LoadedLibrary::CanUnloadNow() const
{
    return Export<HRESULT WINAPI()>("DllCanUnloadNow")();
}

HRESULT LoadedLibrary::GetClassObject(REFCLSID classId, REFIID iid, void** object) const
{
    return Export<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(classId, iid, object);
}
