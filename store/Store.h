#pragma once

#include "store/Folder.h"
#include "win/OleDispatchDriver.h"

#include <string>

// One message store of the session.
class CStore : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    std::wstring GetEntryId() const;    // upper-case hex
    CFolder GetRootFolder() const;      // the top of the visible folders; empty when the store has none
};

// The message stores of the session.
class CStoreCollection : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    CStore GetDefaultStore() const;
};
