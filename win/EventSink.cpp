#include "win/EventSink.h"

#include <wrl/client.h>

STDMETHODIMP CEventSink::QueryInterface(REFIID iid, void** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != eventInterface)
        return E_NOINTERFACE;
    *result = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CEventSink::AddRef() noexcept
{
    return ++references;
}

STDMETHODIMP_(ULONG) CEventSink::Release() noexcept
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

// A source of events knows their ids; it has no use for a description.
STDMETHODIMP CEventSink::GetTypeInfoCount(UINT* count) noexcept
{
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

STDMETHODIMP CEventSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept
{
    if (!info)
        return E_POINTER;
    *info = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP CEventSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP CEventSink::Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* arguments, VARIANT* result,
                                EXCEPINFO*, UINT*) noexcept
{
    if (!receiver)
        return S_OK;
    // A handler may show a dialog, while which everybody else may let go of the receiver.
    const Microsoft::WRL::ComPtr<IUnknown> alive(receiver->GetEventOwner());
    return receiver->ReceiveEvent(id, locale, arguments, result);
}
