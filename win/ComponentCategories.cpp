#include "win/ComponentCategories.h"

#include "win/ClassesRoot.h"
#include "win/ComInitialization.h"

#include <objbase.h>
#include <wrl/client.h>

#include <cwchar>

namespace
{
using Microsoft::WRL::ComPtr;

HRESULT Register(ICatRegister* manager, const CLSID& classId, const ComponentCategory& category) noexcept
{
    CATID id = *category.id;
    return category.implemented ? manager->RegisterClassImplCategories(classId, 1, &id)
                                : manager->RegisterClassReqCategories(classId, 1, &id);
}
}    // namespace

HRESULT RegisterCategories(const CLSID& classId, std::span<const ComponentCategory> categories,
                           RegistrationScope scope) noexcept
{
    if (categories.empty())
        return S_OK;
    const ComInitialization com;
    ComPtr<ICatRegister> manager;
    HRESULT result = ::CoCreateInstance(CLSID_StdComponentCategoriesMgr, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_ICatRegister, reinterpret_cast<void**>(manager.GetAddressOf()));
    const ClassesRoot root(scope);    // only now: the manager itself is found below HKEY_CLASSES_ROOT
    if (SUCCEEDED(result))
        result = root.GetResult();
    for (const ComponentCategory& category : categories)
        if (SUCCEEDED(result))
            result = Register(manager.Get(), classId, category);
    return result;
}

HRESULT RemoveCategoryKeys(const CLSID& classId, RegistrationScope scope) noexcept
{
    const ClassesRoot root(scope);
    if (FAILED(root.GetResult()))
        return root.GetResult();
    wchar_t text[40] = L"";
    ::StringFromGUID2(classId, text, ARRAYSIZE(text));
    for (const wchar_t* name : {L"Implemented Categories", L"Required Categories"})
    {
        wchar_t path[100] = L"";
        std::swprintf(path, ARRAYSIZE(path), L"CLSID\\%ls\\%ls", text, name);
        const LSTATUS deleted = ::RegDeleteTreeW(HKEY_CLASSES_ROOT, path);
        if (deleted != ERROR_SUCCESS && deleted != ERROR_FILE_NOT_FOUND)
            return HRESULT_FROM_WIN32(static_cast<DWORD>(deleted));
    }
    return S_OK;
}
