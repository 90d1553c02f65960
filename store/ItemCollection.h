#pragma once

#include "store/ItemTable.h"
#include "store/MailItem.h"
#include "win/OleDispatchDriver.h"

#include <windows.h>

// The messages of a folder, numbered from 1.
class CItemCollection : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    LONG GetCount() const;
    CMailItem GetItem(LONG index) const;
    CItemTable GetTable() const;
};
