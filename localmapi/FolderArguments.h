#pragma once

#include "localmapi/StoreContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <string>
#include <vector>

// What the callers of IMAPIFolder's methods mean. Each throws MapiError when it is nothing of this store's.

// The messages of a list, in its order.
std::vector<std::int64_t> MessageIdsOf(const StoreContext& store, const ENTRYLIST& list);

// The folder behind an object a caller hands in as destination.
std::int64_t FolderIdOf(const StoreContext& store, void* folder);

// UTF-8 of a text that is wide when `flags` hold MAPI_UNICODE, else of the ANSI code page.
std::string TextOfCaller(LPCTSTR text, ULONG flags);

// Throws MAPI_E_NOT_FOUND when `child` is no sub-folder of `parent`.
void RequireChild(const StoreContext& store, std::int64_t parent, std::int64_t child);

// Throws MAPI_E_HAS_MESSAGES or MAPI_E_HAS_FOLDERS for what DeleteFolder's flags do not let go.
void RequireEmptyEnough(const StoreContext& store, std::int64_t folder, ULONG flags);
