#include "explorer/office/TypeLibraries.h"

#include "win/ThisModule.h"

#include <windows.h>

#include <comdef.h>

#include <string>

using Microsoft::WRL::ComPtr;

namespace
{
// The resources of type TYPELIB, by their ids.
constexpr int firstLibrary = 1;
constexpr int lastLibrary = 2;

std::wstring PathOfThisModule()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = ::GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
        {
            path.resize(length);
            return path;
        }
        path.resize(2 * path.size());
    }
}
}    // namespace

ComPtr<ITypeInfo> FindTypeInfo(REFIID iid)
{
    const std::wstring module = PathOfThisModule();
    HRESULT result = TYPE_E_ELEMENTNOTFOUND;
    for (int id = firstLibrary; id <= lastLibrary; ++id)
    {
        ComPtr<ITypeLib> library;
        ComPtr<ITypeInfo> info;
        const std::wstring path = module + L'\\' + std::to_wstring(id);
        result = ::LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library);
        if (SUCCEEDED(result) && SUCCEEDED(library->GetTypeInfoOfGuid(iid, &info)))
            return info;
    }
    throw _com_error(FAILED(result) ? result : TYPE_E_ELEMENTNOTFOUND);
}
