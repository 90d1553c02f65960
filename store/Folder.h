#pragma once

#include "store/ItemCollection.h"
#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <string>

class CFolderCollection;

// One folder of a message store.
class CFolder : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    std::wstring GetName() const;
    std::wstring GetEntryId() const;    // upper-case hex
    CFolder GetParent() const;
    CItemCollection GetItems() const;
    CFolderCollection GetFolders() const;
    LONG GetDefaultItemType() const;    // OlItemType: 0 for a folder that holds mail
};

// The folders directly below a folder, numbered from 1.
class CFolderCollection : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    LONG GetCount() const;
    CFolder GetItem(LONG index) const;
};
