#pragma once

#include <windows.h>

#include <comutil.h>

#include <cstddef>
#include <functional>
#include <string>

// An argument that was left out.
inline bool IsMissing(const VARIANT& argument) noexcept
{
    return argument.vt == VT_EMPTY || (argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND);
}

// An argument as a value of its own: callers from scripts pass references to variables. Throws _com_error.
_variant_t ArgumentOf(const VARIANT& argument);

// Which element of a collection an index means: a number from 1, or a text, which is compared with what
// `nameOf` says of each element, whatever its case. The place counts from 0. Throws _com_error: E_INVALIDARG
// when there is no such element.
std::size_t PlaceInCollection(const VARIANT& index, std::size_t count,
                              const std::function<std::wstring(std::size_t)>& nameOf);
