#pragma once

#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <string>

// One recipient of a message.
class CRecipient : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    LONG GetType() const;            // MAPI_TO, MAPI_CC or MAPI_BCC
    std::wstring GetName() const;    // display name
};

// The recipients of a message, numbered from 1.
class CRecipientCollection : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    LONG GetCount() const;
    CRecipient GetItem(LONG index) const;
};
