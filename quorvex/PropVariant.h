#pragma once

#include <windows.h>

#include <comutil.h>
#include <mapidefs.h>

#include <cstdint>
#include <span>
#include <string>

// A property's value as automation takes it: numbers by their type, times as local dates, text as BSTR,
// binary as an array of VT_UI1, a GUID as text in braces, several values as an array of VARIANTs. What is
// absent (PT_ERROR, PT_NULL) or no value (PT_OBJECT) is empty.
_variant_t ToVariant(const SPropValue& value);

_variant_t BinaryVariant(std::span<const std::uint8_t> bytes);

// The value's text; 8-bit text is read in the system's code page. Empty for what is no text.
std::wstring TextOf(const SPropValue& value);
