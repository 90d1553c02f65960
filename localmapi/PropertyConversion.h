#pragma once

#include "localmapi/storage/StoredValue.h"

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>

// Between the store's values and MAPI's.

// The tag under which the store keeps a property: texts in their Unicode form, all else as it is.
std::uint32_t StoredTag(std::uint32_t tag);

// Fills `property` with the value as `tag` asks for it: texts as PT_UNICODE or, in the ANSI code page, as
// PT_STRING8. A tag of type PT_UNSPECIFIED gets the value's own type: texts PT_UNICODE, numbers PT_LONG where
// 32 bits hold them, else PT_I8; PT_DOUBLE; PT_BINARY. An absent value gives PT_ERROR with MAPI_E_NOT_FOUND,
// a value that cannot be of the tag's type PT_ERROR with MAPI_E_INVALID_TYPE.
// What the value points to is allocated onto the MAPI buffer `owner`. Throws std::bad_alloc.
void FillPropValue(SPropValue& property, std::uint32_t tag, const StoredValue& value, void* owner);

// The value of a property a client hands in; PT_NULL and PT_ERROR mean an absent one. Throws MapiError:
// MAPI_E_TYPE_NO_SUPPORT for the types the store does not keep (multi-valued ones, PT_OBJECT),
// MAPI_E_INVALID_PARAMETER for a text or binary value without the bytes it promises.
StoredValue StoredValueOf(const SPropValue& property);
