#pragma once

#include <windows.h>

#include <string>
#include <utility>

// What the exception being handled comes to: MapiError and _com_error keep their code and text, lack of
// memory is E_OUTOFMEMORY, anything else E_UNEXPECTED.
struct Failure
{
    HRESULT code;
    std::wstring description;
};
Failure CurrentFailure() noexcept;

// Leaves the failure as this thread's IErrorInfo, with this server as its source.
void SetErrorInfoFor(const Failure& failure) noexcept;

// The name by which failures say where they come from.
inline constexpr const wchar_t* errorSource = L"QuorvexDll.RDOSession";

// Runs `body` for a caller outside: no exception leaves; a failure becomes its HRESULT and this thread's
// IErrorInfo.
template <class Body>
HRESULT ComBoundary(Body&& body) noexcept
{
    try
    {
        std::forward<Body>(body)();
        return S_OK;
    }
    catch (...)
    {
        const Failure failure = CurrentFailure();
        SetErrorInfoFor(failure);
        return failure.code;
    }
}
