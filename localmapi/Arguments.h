#pragma once

#include "localmapi/ComBoundary.h"

#include <mapicode.h>

// How MAPI's methods look at their arguments, inside ComBoundary.

// What a pointer that must not be null points to; throws MapiError MAPI_E_INVALID_PARAMETER.
template <typename T>
T& Given(T* pointer)
{
    if (!pointer)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    return *pointer;
}

// Throws MapiError MAPI_E_UNKNOWN_FLAGS for a flag that is not among the known.
inline void RequireKnownFlags(ULONG flags, ULONG known)
{
    if (flags & ~known)
        throw MapiError(MAPI_E_UNKNOWN_FLAGS);
}

inline void ThrowIfFailed(HRESULT result)
{
    if (FAILED(result))
        throw MapiError(result);
}

// The answer of a method that the store has no use for; nulls what it would have given.
template <typename... T>
HRESULT NoSupport(T**... results) noexcept
{
    (static_cast<void>(results ? * results = nullptr : nullptr), ...);
    return MAPI_E_NO_SUPPORT;
}
