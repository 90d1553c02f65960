#pragma once

#include "win/ComAggObject.h"
#include "win/ComObject.h"

#include <windows.h>

#include <unknwn.h>

// Makes T a class that clients create by its class id, alone or as part of another object.
template <class T, const CLSID* classId>
class CComCoClass
{
public:
    static const CLSID& GetObjectCLSID() noexcept { return *classId; }

    // The class object's work: a new object and its interface `iid`, the caller's to release. With an outer
    // object only IUnknown may be asked for (CLASS_E_NOAGGREGATION).
    static HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept
    {
        if (!result)
            return E_POINTER;
        return outer ? CComAggObject<T>::Create(outer, iid, result) : CComObject<T>::Create(iid, result);
    }

protected:
    ~CComCoClass() = default;
};
