#pragma once

#include "explorer/office/ComBoundary.h"

#include <windows.h>

#include <comutil.h>

#include <string>

// For accessors of a text or a truth value. The caller of a getter frees the BSTR.
inline HRESULT GetText(const std::wstring& text, BSTR* value) noexcept
{
    return ComBoundary(value, [&] { *value = _bstr_t(text.c_str()).Detach(); });
}
inline HRESULT GetBool(bool truth, VARIANT_BOOL* value) noexcept
{
    return ComBoundary(value, [&] { *value = truth ? VARIANT_TRUE : VARIANT_FALSE; });
}
inline HRESULT GetNumber(int number, int* value) noexcept
{
    return ComBoundary(value, [&] { *value = number; });
}
