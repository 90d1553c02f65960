#pragma once

#include <windows.h>

#include <comutil.h>
#include <oaidl.h>
#include <oleauto.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

// Automation's arrays, each of one dimension. What makes one throws MapiError when memory runs out.

struct SafeArrayDeleter
{
    void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
using SafeArray = std::unique_ptr<SAFEARRAY, SafeArrayDeleter>;

SafeArray MakeArray(VARTYPE type, std::size_t count);

// The array as a VARIANT, which owns it from then on.
_variant_t ArrayVariant(SafeArray array, VARTYPE type);

// An array of VARIANTs with these values.
_variant_t VariantsAsArray(std::vector<_variant_t> values);

// The bytes of an array whose elements are one byte each; nothing for any other array.
std::optional<std::vector<std::uint8_t>> BytesOfArray(SAFEARRAY* array);

// The property tags in an array: the low 32 bits of each element, whatever integer type it was declared with,
// or the elements of an array of VARIANTs as numbers. Throws MapiError (DISP_E_TYPEMISMATCH) for any other
// array.
std::vector<ULONG> TagsOfArray(SAFEARRAY* array);
