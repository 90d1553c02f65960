#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>

// The place, counted from 0, that a collection's 1-based index means; throws MapiError with DISP_E_BADINDEX
// when the collection has no such place, with DISP_E_TYPEMISMATCH when the index is no number.
std::size_t PlaceOf(const VARIANT& index, std::size_t count);
