#pragma once

#include "engine/FolderTreeView.h"
#include "engine/ScanState.h"
#include "store/Folder.h"

#include <windows.h>

// Opens the default store of the logged-on session: fills storeEntryId and folderRoot. 1, or 0 when the store
// has no root folder or refuses a call.
LONG OpenDefaultStore(ScanState& state);

// Walks `folder` and all below it in pre-order, drawing each folder into `view` below `parentItem` and
// appending its record to `folders`. A folder that cannot be read is passed over with all below it, silently;
// an empty driver is no folder. Ends early when stopRequested is set.
void EnumerateFolder(ScanState& state, FolderTreeView& view, const CFolder& folder, TreeItem parentItem);

// Sets each record's selected flag from its checkItem's check state in `view`, the one that EnumerateFolder
// drew into, until stopRequested is 1.
void MarkSelectedFolders(ScanState& state, const FolderTreeView& view);

// The index of a folder's icon in the folder image list, by its default item type (OlItemType).
int FolderImage(LONG defaultItemType);
