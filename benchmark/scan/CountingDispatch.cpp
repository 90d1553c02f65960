#include "benchmark/scan/CountingDispatch.h"

#include <utility>

using Microsoft::WRL::ComPtr;

ComPtr<IDispatch> CountingDispatch::Before(ComPtr<IDispatch> object, CallCounts& counts)
{
    ComPtr<IDispatch> counting;
    *counting.GetAddressOf() = new CountingDispatch(std::move(object), counts);
    return counting;
}

STDMETHODIMP CountingDispatch::QueryInterface(REFIID iid, void** result)
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch)
        return E_NOINTERFACE;
    AddRef();
    *result = static_cast<IDispatch*>(this);
    return S_OK;
}

STDMETHODIMP_(ULONG) CountingDispatch::AddRef()
{
    return ++references;
}

STDMETHODIMP_(ULONG) CountingDispatch::Release()
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

STDMETHODIMP CountingDispatch::GetTypeInfoCount(UINT* count)
{
    return object->GetTypeInfoCount(count);
}

STDMETHODIMP CountingDispatch::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info)
{
    return object->GetTypeInfo(index, locale, info);
}

STDMETHODIMP CountingDispatch::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                             DISPID* ids)
{
    return object->GetIDsOfNames(iid, names, count, locale, ids);
}

STDMETHODIMP CountingDispatch::Invoke(DISPID id, REFIID iid, LCID locale, WORD kind, DISPPARAMS* parameters,
                                      VARIANT* result, EXCEPINFO* info, UINT* argument)
{
    counts.Add(id, kind, parameters ? parameters->cArgs : 0);
    const HRESULT called = object->Invoke(id, iid, locale, kind, parameters, result, info, argument);
    if (SUCCEEDED(called) && result && result->vt == VT_DISPATCH && result->pdispVal)
    {
        ComPtr<IDispatch> given;
        *given.GetAddressOf() = result->pdispVal;
        result->pdispVal = Before(std::move(given), counts).Detach();
    }
    return called;
}
