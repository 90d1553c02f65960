#pragma once

#include "localmapi/StoreContext.h"

#include <windows.h>

#include <mapidefs.h>

// OpenEntry of the store and its folders: the root for an empty entry id, else the folder or message it
// names, in either form of the id. `entry` gets a reference of the caller's. Throws MapiError or StoreError.
void OpenStoreEntry(const SharedStore& store, ULONG size, const void* entryId, const IID* iid, ULONG flags,
                    ULONG* objectType, IUnknown** entry);

// Whether flags to open with ask for, or are glad of, the right to change the object.
bool AsksToModify(ULONG flags);

// Yields `object` by the interface asked for; null means the object's own. Throws MapiError
// MAPI_E_INTERFACE_NOT_SUPPORTED.
void YieldInterface(IUnknown& object, const IID* iid, IUnknown** result);
