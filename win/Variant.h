#pragma once

#include <windows.h>

#include <comutil.h>

#include <optional>
#include <span>
#include <string>

// Variants of exactly the type that a call's contract names. `_variant_t` alone would make VT_INT of an int.
_variant_t LongVariant(LONG value);                   // VT_I4
_variant_t BoolVariant(bool value);                   // VT_BOOL
_variant_t DateVariant(DATE value);                   // VT_DATE
_variant_t TextVariant(const std::wstring& value);    // VT_BSTR, embedded zeros kept
_variant_t DispatchVariant(IDispatch* value);         // VT_DISPATCH, holding a reference of its own
_variant_t MissingVariant();                          // an optional argument that is left out

// The text of a BSTR, embedded zeros kept; a null BSTR is the empty text.
std::wstring TextOf(BSTR value);

// Element `index` (counted from the lower bound) of a one-dimensional array variant, as a variant of the
// element's own type. Empty when `array` holds no such array, has no such element, or a variant cannot hold
// it.
_variant_t ArrayElement(const VARIANT& array, ULONG index);

// The number of elements of a one-dimensional array variant; 0 for anything else.
ULONG ArrayLength(const VARIANT& array);

// The bytes of a one-dimensional array variant of bytes, borrowed; nothing for anything else.
std::optional<std::span<const BYTE>> ArrayBytes(const VARIANT& array);
