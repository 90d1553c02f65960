#pragma once

#include "win/ComBoundary.h"

#include <windows.h>

#include <utility>

// For a method that hands something out: `*out` is empty until `body` has filled it.
template <typename Value, typename Body>
HRESULT ComBoundary(Value* out, Body&& body) noexcept
{
    if (!out)
        return E_POINTER;
    *out = Value();
    return ComBoundary(std::forward<Body>(body));
}
