#pragma once

#include "win/ComContainedObject.h"
#include "win/ComModule.h"
#include "win/ComObjectRoot.h"

#include <windows.h>

#include <new>

// The COM class `Base` made as part of another object. This is the IUnknown that the outer object holds: it
// alone knows the inner object's interfaces and counts its references. Keeps the module loaded while it
// lives.
template <class Base>
class CComAggObject final : private ModuleReference,
                            public IUnknown,
                            public CComObjectRootEx<typename Base::ThreadModel>
{
public:
    // Makes an object for `outer`, which is not counted, and gives out its own IUnknown, the outer object's
    // to release. CLASS_E_NOAGGREGATION when any other interface is asked for, E_OUTOFMEMORY, or
    // FinalConstruct's failure.
    static HRESULT Create(IUnknown* outer, REFIID iid, void** result) noexcept
    {
        *result = nullptr;
        if (iid != IID_IUnknown)
            return CLASS_E_NOAGGREGATION;
        CComAggObject* object = new (std::nothrow) CComAggObject(outer);
        if (!object)
            return E_OUTOFMEMORY;
        object->AddRef();
        HRESULT created = object->contained.FinalConstruct();
        if (SUCCEEDED(created))
            created = object->QueryInterface(iid, result);
        object->Release();
        return created;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override
    {
        if (!result || iid != IID_IUnknown)
            return Base::InternalQueryInterface(static_cast<Base*>(&contained), iid, result);
        *result = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return this->InternalAddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = this->InternalRelease();
        if (left == 0)
        {
            contained.FinalRelease();
            delete this;
        }
        return left;
    }

private:
    explicit CComAggObject(IUnknown* outer) : contained(outer) {}
    ~CComAggObject() = default;

    CComContainedObject<Base> contained;
};
