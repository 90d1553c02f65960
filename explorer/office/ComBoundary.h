#pragma once

#include "win/OleException.h"

#include <windows.h>

#include <comdef.h>

#include <new>
#include <utility>

// Runs `body` for an add-in that calls: no exception leaves, a failure becomes its HRESULT.
template <typename Body>
HRESULT ComBoundary(Body&& body) noexcept
{
    try
    {
        std::forward<Body>(body)();
        return S_OK;
    }
    catch (const COleException& failure)
    {
        return failure.GetCode();
    }
    catch (const _com_error& failure)
    {
        return failure.Error();
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

// The same for a method that hands something out: `*out` is empty until `body` has filled it.
template <typename Value, typename Body>
HRESULT ComBoundary(Value* out, Body&& body) noexcept
{
    if (!out)
        return E_POINTER;
    *out = Value();
    return ComBoundary(std::forward<Body>(body));
}
