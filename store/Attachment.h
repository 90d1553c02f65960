#pragma once

#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <string>

// One attachment of a message.
class CAttachment : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    std::wstring GetFileName() const;
};

// The attachments of a message, numbered from 1.
class CAttachmentCollection : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    LONG GetCount() const;
    CAttachment GetItem(LONG index) const;
};
