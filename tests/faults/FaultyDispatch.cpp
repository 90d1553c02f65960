#include "tests/faults/FaultyDispatch.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <utility>

using Microsoft::WRL::ComPtr;

bool InvokeFaults::Count()
{
    const LONG call = ++calls;
    if (number == 0 || call < number || (call > number && fault != InvokeFault::refusedFromThenOn))
        return false;
    ++faults;
    return true;
}

// Not in an unnamed namespace: the compiler would take calls through the interface for unreachable.
class FaultyDispatch : public IDispatch
{
public:
    FaultyDispatch(ComPtr<IDispatch> real, InvokeFaults& faults) : real(std::move(real)), faults(faults)
    {
        ++faults.liveObjects;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        // What else the object is asked for it knows best: a folder gives itself out to those of its own
        // kind.
        if (iid != IID_IUnknown && iid != IID_IDispatch)
            return real->QueryInterface(iid, object);
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG left = --references;
        if (!left)
            delete this;
        return left;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return real->GetTypeInfoCount(count); }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) override
    {
        return real->GetTypeInfo(index, locale, typeInfo);
    }
    STDMETHODIMP GetIDsOfNames(REFIID iid, OLECHAR** names, UINT count, LCID locale, DISPID* ids) override
    {
        return real->GetIDsOfNames(iid, names, count, locale, ids);
    }

    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD kind, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override
    {
        if (!faults.Count())
            return HandOn(id, iid, locale, kind, parameters, result, exception, badArgument);
        switch (faults.fault)
        {
        case InvokeFault::refusedWithInfo:
            return RefuseWithInfo(exception);
        case InvokeFault::withoutObject:
        case InvokeFault::wrongType:
            return result ? Falsify(HandOn(id, iid, locale, kind, parameters, result, exception, badArgument),
                                    *result)
                          : RPC_E_SERVERFAULT;
        case InvokeFault::slow:
            faults.onSlow();
            return HandOn(id, iid, locale, kind, parameters, result, exception, badArgument);
        default:
            return RPC_E_DISCONNECTED;
        }
    }

private:
    virtual ~FaultyDispatch() { --faults.liveObjects; }

    HRESULT HandOn(DISPID id, REFIID iid, LCID locale, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument)
    {
        const HRESULT called =
            real->Invoke(id, iid, locale, kind, parameters, result, exception, badArgument);
        if (SUCCEEDED(called) && result && result->vt == VT_DISPATCH && result->pdispVal)
        {
            ComPtr<IDispatch> given;
            *given.GetAddressOf() = result->pdispVal;    // now its owner
            result->pdispVal = new FaultyDispatch(std::move(given), faults);
        }
        return called;
    }

    static HRESULT WINAPI NameTexts(EXCEPINFO* info)
    {
        info->bstrSource = ::SysAllocString(L"The store");
        info->bstrDescription = ::SysAllocString(L"The store has gone.");
        return S_OK;
    }

    // The texts are given only when they are asked for, as some servers do.
    static HRESULT RefuseWithInfo(EXCEPINFO* exception)
    {
        if (!exception)
            return RPC_E_SERVERFAULT;
        *exception = {};
        exception->scode = E_ACCESSDENIED;
        exception->pfnDeferredFillIn = NameTexts;
        return DISP_E_EXCEPTION;
    }

    HRESULT Falsify(HRESULT called, VARIANT& result) const
    {
        if (FAILED(called))
            return called;
        const bool isObject = result.vt == VT_DISPATCH;
        ::VariantClear(&result);
        if (faults.fault == InvokeFault::withoutObject && !isObject)
            return RPC_E_SERVERFAULT;
        result.vt = isObject && faults.fault == InvokeFault::withoutObject ? VT_DISPATCH : VT_ERROR;
        result.pdispVal = nullptr;
        if (result.vt == VT_ERROR)
            result.scode = E_FAIL;
        return called;
    }

    const ComPtr<IDispatch> real;
    InvokeFaults& faults;
    std::atomic<ULONG> references = 1;
};

CRDOSession BehindFaults(const CRDOSession& session, InvokeFaults& faults)
{
    ComPtr<IDispatch> object;
    *object.GetAddressOf() = new FaultyDispatch(ComPtr<IDispatch>(session.GetDispatch()), faults);
    return CRDOSession(std::move(object));
}
