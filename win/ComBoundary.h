#pragma once

#include <windows.h>

#include <type_traits>

// The HRESULT of the exception now being handled, whose description becomes this thread's IErrorInfo:
// _com_error hands on the failing object's own. COleException and _com_error keep their code, lack of memory
// is E_OUTOFMEMORY, anything else E_UNEXPECTED. To be called in a catch block only.
HRESULT ReportComFailure() noexcept;

// Every COM method, export and event handler runs what it does through this: no exception leaves. The result
// is the body's own HRESULT, or S_OK for a body without one, or that of the failure.
template <class Body>
HRESULT ComBoundary(Body&& body) noexcept
{
    try
    {
        if constexpr (std::is_void_v<decltype(body())>)
        {
            body();
            return S_OK;
        }
        else
            return body();
    }
    catch (...)
    {
        return ReportComFailure();
    }
}
