#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

// The description of one dual interface, and late-bound calls by it. Read at its first use: from the library
// as it is registered, else from the one of the same id and version among this module's own resources. Used
// by one thread. Every call answers TYPE_E_... while there is no such description.
class TypeInfoHolder
{
public:
    TypeInfoHolder(const IID& iid, const GUID& library, WORD major, WORD minor) noexcept
        : iid(iid),
          library(library),
          major(major),
          minor(minor)
    {
    }

    HRESULT Get(LCID locale, ITypeInfo** result) noexcept;    // the caller's to release

    // As IDispatch has them. `target` is the interface that the description is of.
    HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) noexcept;
    HRESULT Invoke(void* target, DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept;

private:
    HRESULT Load(LCID locale) noexcept;

    const IID& iid;
    const GUID& library;
    const WORD major;
    const WORD minor;
    Microsoft::WRL::ComPtr<ITypeInfo> info;
};
