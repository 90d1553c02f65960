#include "win/ComClassFactory.h"

#include "win/ComModule.h"

STDMETHODIMP CComClassFactory::QueryInterface(REFIID iid, void** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory)
        return E_NOINTERFACE;
    *result = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CComClassFactory::AddRef() noexcept
{
    const ULONG held = ++references;
    if (held == 2)
        ComModule::Lock();
    return held;
}

STDMETHODIMP_(ULONG) CComClassFactory::Release() noexcept
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    else if (left == 1)
        ComModule::Unlock();
    return left;
}

STDMETHODIMP CComClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return create(outer, iid, result);
}

STDMETHODIMP CComClassFactory::LockServer(BOOL lock) noexcept
{
    if (lock)
        ComModule::Lock();
    else
        ComModule::Unlock();
    return S_OK;
}
