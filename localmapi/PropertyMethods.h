#pragma once

#include "localmapi/PropertyHolder.h"

#include <windows.h>

#include <mapidefs.h>

// IMAPIProp's methods over a PropertyHolder. They check what the caller hands in, throw MapiError, StoreError
// or std::bad_alloc, and yield S_OK or a warning. Out-parameters are MAPI buffers of the caller's.
namespace property_methods
{
HRESULT GetProps(PropertyHolder& holder, const SPropTagArray* tags, ULONG flags, ULONG* count,
                 SPropValue** values);
HRESULT GetPropList(PropertyHolder& holder, ULONG flags, SPropTagArray** tags);
HRESULT SetProps(PropertyHolder& holder, ULONG count, const SPropValue* values, SPropProblemArray** problems);
HRESULT DeleteProps(PropertyHolder& holder, const SPropTagArray* tags, SPropProblemArray** problems);

// `owner` is the object itself: a stream keeps it alive.
HRESULT OpenProperty(PropertyHolder& holder, IUnknown& owner, ULONG tag, const IID* iid, ULONG flags,
                     IUnknown** opened);

// `included` null means all properties and the object's parts; else only those.
HRESULT CopyProps(PropertyHolder& holder, const SPropTagArray* included, const SPropTagArray* excluded,
                  void* destination, ULONG flags, SPropProblemArray** problems);

HRESULT GetNamesFromIDs(StoreFile& file, SPropTagArray** tags, const GUID* set, ULONG flags, ULONG* count,
                        MAPINAMEID*** names);
HRESULT GetIDsFromNames(StoreFile& file, ULONG count, MAPINAMEID** names, ULONG flags, SPropTagArray** tags);
}    // namespace property_methods
