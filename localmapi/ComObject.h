#pragma once

#include "localmapi/ModuleCount.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapiguid.h>
#include <wrl/client.h>

#include <atomic>
#include <utility>

// IUnknown for an object with the one interface `Interface`, asked for by IUnknown's id or one of `iids`.
// It is counted in the module for as long as it lives, and made with MakeObject.
template <typename Interface, const IID&... iids>
class ComObject : public Interface
{
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && !((iid == iids) || ...))
            return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++referenceCount; }

    STDMETHODIMP_(ULONG) Release() noexcept override
    {
        const ULONG remaining = --referenceCount;
        if (remaining == 0)
            delete this;
        return remaining;
    }

protected:
    virtual ~ComObject() = default;

private:
    ModuleCount counted;
    std::atomic<ULONG> referenceCount = 1;
};

// Makes an object whose first reference the result owns.
template <typename Object, typename... Arguments>
Microsoft::WRL::ComPtr<Object> MakeObject(Arguments&&... arguments)
{
    // Not by Attach, which counts one more reference in mingw's header.
    Microsoft::WRL::ComPtr<Object> object;
    *object.ReleaseAndGetAddressOf() = new Object(std::forward<Arguments>(arguments)...);
    return object;
}
