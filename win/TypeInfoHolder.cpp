#include "win/TypeInfoHolder.h"

#include "win/TypeLibrary.h"

using Microsoft::WRL::ComPtr;

HRESULT TypeInfoHolder::Load(LCID locale) noexcept
{
    if (info)
        return S_OK;
    ComPtr<ITypeLib> loaded;
    HRESULT result = ::LoadRegTypeLib(library, major, minor, locale, loaded.GetAddressOf());
    if (SUCCEEDED(result))
        result = loaded->GetTypeInfoOfGuid(iid, info.ReleaseAndGetAddressOf());
    if (SUCCEEDED(result))
        return result;
    // A registered library may be a broken one as well: ours has the interface for certain.
    if (FAILED(LoadOwnTypeLibrary(library, major, minor, loaded.ReleaseAndGetAddressOf())))
        return result;
    return loaded->GetTypeInfoOfGuid(iid, info.ReleaseAndGetAddressOf());
}

HRESULT TypeInfoHolder::Get(LCID locale, ITypeInfo** result) noexcept
{
    const HRESULT loaded = Load(locale);
    return SUCCEEDED(loaded) ? info.CopyTo(result) : loaded;
}

HRESULT TypeInfoHolder::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                      DISPID* ids) noexcept
{
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    const HRESULT loaded = Load(locale);
    return SUCCEEDED(loaded) ? info->GetIDsOfNames(names, count, ids) : loaded;
}

HRESULT TypeInfoHolder::Invoke(void* target, DISPID id, REFIID reserved, LCID locale, WORD flags,
                               DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                               UINT* badArgument) noexcept
{
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    const HRESULT loaded = Load(locale);
    return SUCCEEDED(loaded) ? info->Invoke(target, id, flags, arguments, result, exception, badArgument)
                             : loaded;
}
