#pragma once

#include "engine/FolderTreeView.h"
#include "store/Folder.h"

#include <windows.h>

#include <string>

// The item type (OlItemType) of the folders that hold mail.
inline constexpr LONG mailItems = 0;

// One folder of the default store.
struct FOLDER_INFO
{
    CFolder folder;
    TreeItem treeItem = TreeItem::none;     // in the tree view that drew it last
    TreeItem checkItem = TreeItem::none;    // in the tree view where the user ticks it
    LONG selected = 0;                      // 1 when the folder is to be scanned
    std::wstring name;                      // without the item count
    std::wstring entryId;                   // upper-case hex
    std::wstring parentEntryId;             // upper-case hex; empty when the store names no parent
    LONG topLevel = 0;                      // 1 for the first record only, the store's root folder
};
