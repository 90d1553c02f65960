#include "win/ComBoundary.h"

#include "win/OleException.h"
#include "win/SystemMessage.h"
#include "win/WindowBoundary.h"

#include <comdef.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <new>
#include <string>

namespace
{
using Microsoft::WRL::ComPtr;

void SetDescription(const std::wstring& description, const std::wstring& source) noexcept
{
    ComPtr<ICreateErrorInfo> created;
    if (FAILED(::CreateErrorInfo(created.GetAddressOf())))
        return;
    created->SetDescription(const_cast<wchar_t*>(description.c_str()));
    created->SetSource(const_cast<wchar_t*>(source.c_str()));
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(created.As(&info)))
        ::SetErrorInfo(0, info.Get());
}

HRESULT Report(const _com_error& failure)
{
    // The failing object's words are taken off the thread when they are caught: put them back for our caller.
    ComPtr<IErrorInfo> info;
    *info.GetAddressOf() = failure.ErrorInfo();    // counted for us
    if (info)
        ::SetErrorInfo(0, info.Get());
    else
        SetDescription(SystemMessage(static_cast<DWORD>(failure.Error())), std::wstring());
    return failure.Error();
}

HRESULT ReportCurrentFailure()
{
    try
    {
        throw;
    }
    catch (const _com_error& failure)
    {
        return Report(failure);
    }
    catch (const COleDispatchException& failure)
    {
        SetDescription(DescribeFailure(failure), failure.GetSource());
        return failure.GetCode();
    }
    catch (const COleException& failure)
    {
        SetDescription(DescribeFailure(failure), std::wstring());
        return failure.GetCode();
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (...)
    {
        return E_UNEXPECTED;
    }
}
}    // namespace

HRESULT ReportComFailure() noexcept
{
    ::SetErrorInfo(0, nullptr);    // what an earlier call left there is not about this failure
    try
    {
        return ReportCurrentFailure();
    }
    catch (...)
    {
        return E_OUTOFMEMORY;    // there was not even room for the description
    }
}
