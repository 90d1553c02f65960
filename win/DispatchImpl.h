#pragma once

#include "win/TypeInfoHolder.h"

#include <windows.h>

#include <oaidl.h>

// IDispatch of the dual interface `Interface`: late-bound calls find their function by the type library
// `library` of version major.minor and go through the interface's own slots.
template <class Interface, const IID* iid, const GUID* library, WORD major, WORD minor>
class IDispatchImpl : public Interface
{
public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override
    {
        if (!count)
            return E_POINTER;
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override
    {
        if (!info)
            return E_POINTER;
        *info = nullptr;
        return index == 0 ? holder.Get(locale, info) : DISP_E_BADINDEX;
    }

    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) noexcept override
    {
        return holder.GetIDsOfNames(reserved, names, count, locale, ids);
    }

    STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept override
    {
        return holder.Invoke(static_cast<Interface*>(this), id, reserved, locale, flags, arguments, result,
                             exception, badArgument);
    }

protected:
    ~IDispatchImpl() = default;

private:
    TypeInfoHolder holder{*iid, *library, major, minor};
};
