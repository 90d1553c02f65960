#pragma once

#include "win/ComModule.h"

#include <windows.h>

#include <new>

// The COM class `Base` as an object on the heap that stands for itself. Keeps the module loaded while it
// lives.
template <class Base>
class CComObject final : private ModuleReference, public Base
{
public:
    // Makes an object and gives out its interface `iid`, the caller's to release. E_OUTOFMEMORY,
    // E_NOINTERFACE, or FinalConstruct's failure; then there is no object.
    static HRESULT Create(REFIID iid, void** result) noexcept
    {
        *result = nullptr;
        CComObject* object = new (std::nothrow) CComObject;
        if (!object)
            return E_OUTOFMEMORY;
        object->AddRef();
        HRESULT created = object->FinalConstruct();
        if (SUCCEEDED(created))
            created = object->QueryInterface(iid, result);
        object->Release();
        return created;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override
    {
        return Base::InternalQueryInterface(static_cast<Base*>(this), iid, result);
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return this->InternalAddRef(); }
    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG left = this->InternalRelease();
        if (left == 0)
        {
            this->FinalRelease();
            delete this;
        }
        return left;
    }

private:
    CComObject() = default;
    ~CComObject() = default;
};
