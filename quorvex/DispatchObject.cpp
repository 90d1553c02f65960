#include "quorvex/DispatchObject.h"

#include "quorvex/ComBoundary.h"
#include "quorvex/MapiRuntime.h"
#include "quorvex/Module.h"

#include <algorithm>

namespace
{
// A property put carries its value under DISPID_PROPERTYPUT; nothing else of ours takes named arguments.
HRESULT CheckArguments(const Operation& operation, const DISPPARAMS& parameters)
{
    const UINT named = operation.kind == DISPATCH_PROPERTYPUT ? 1 : 0;
    if (parameters.cNamedArgs > named)
        return DISP_E_NONAMEDARGS;
    if (parameters.cArgs != operation.argumentCount)
        return DISP_E_BADPARAMCOUNT;
    if (parameters.cArgs > 0 && !parameters.rgvarg)
        return E_INVALIDARG;
    if (named && (parameters.cNamedArgs == 0 || !parameters.rgdispidNamedArgs ||
                  parameters.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
        return DISP_E_PARAMNOTFOUND;
    return S_OK;
}

HRESULT ReportFailure(const Failure& failure, EXCEPINFO* exception)
{
    // Codes of the dispatch facility are about the call itself and mean to automation what they say.
    if (HRESULT_FACILITY(failure.code) == FACILITY_DISPATCH)
        return failure.code;
    if (!exception)
    {
        SetErrorInfoFor(failure);
        return failure.code;
    }
    *exception = {};
    exception->bstrSource = SysAllocString(errorSource);
    exception->bstrDescription = SysAllocString(failure.description.c_str());
    exception->scode = failure.code;
    return DISP_E_EXCEPTION;
}
}    // namespace

CDispatchObject::CDispatchObject() noexcept
{
    ++Module::count;
}

CDispatchObject::~CDispatchObject()
{
    --Module::count;
}

STDMETHODIMP CDispatchObject::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    IUnknown* found = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch)
        found = static_cast<IDispatch*>(this);
    else if (iid == IID_ISupportErrorInfo)
        found = static_cast<ISupportErrorInfo*>(this);
    else
        found = FindInterface(iid);
    if (!found)
        return E_NOINTERFACE;
    found->AddRef();
    *object = found;
    return S_OK;
}

STDMETHODIMP_(ULONG) CDispatchObject::AddRef() noexcept
{
    return ++references;
}

STDMETHODIMP_(ULONG) CDispatchObject::Release() noexcept
{
    const ULONG left = --references;
    if (left == 0)
    {
        // The last reference may go on a thread that never called; the MAPI objects held here must be let go
        // on a thread that MAPI knows.
        PrepareThreadForRelease();
        delete this;
    }
    return left;
}

STDMETHODIMP CDispatchObject::GetTypeInfoCount(UINT* count) noexcept
{
    if (!count)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

STDMETHODIMP CDispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** typeInfo) noexcept
{
    if (!typeInfo)
        return E_POINTER;
    *typeInfo = nullptr;
    return DISP_E_BADINDEX;
}

STDMETHODIMP CDispatchObject::GetIDsOfNames(REFIID, OLECHAR**, UINT count, LCID, DISPID* ids) noexcept
{
    if (!ids)
        return E_POINTER;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP CDispatchObject::Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept
{
    if (result)
        VariantInit(result);
    if (iid != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!parameters)
        return E_INVALIDARG;

    const std::span<const Operation> operations = Operations();
    const auto operation = std::ranges::find_if(operations, [&](const Operation& candidate)
                                                { return candidate.id == id && (candidate.kind & flags); });
    if (operation == operations.end())
        return DISP_E_MEMBERNOTFOUND;
    if (const HRESULT wrong = CheckArguments(*operation, *parameters); FAILED(wrong))
        return wrong;

    // Whoever runs meanwhile may give up the caller's last reference to this object.
    const ComPtr<IDispatch> alive(this);
    try
    {
        PrepareThread();
        operation->call(*this, *parameters, result);
        return S_OK;
    }
    catch (const BadArgument& bad)
    {
        if (badArgument)
            *badArgument = bad.place;
        return bad.code;
    }
    catch (...)
    {
        return ReportFailure(CurrentFailure(), exception);
    }
}

STDMETHODIMP CDispatchObject::InterfaceSupportsErrorInfo(REFIID iid) noexcept
{
    return iid == IID_IDispatch ? S_OK : S_FALSE;
}
