#pragma once

#include "store/Attachment.h"
#include "store/Recipient.h"
#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <comutil.h>

#include <string>

// One message of the store.
class CMailItem : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    std::wstring GetEntryId() const;    // upper-case hex
    std::wstring GetSubject() const;
    std::wstring GetBodyText() const;    // plain text
    std::wstring GetSenderEmail() const;
    std::wstring GetSenderName() const;
    DATE GetSentTime() const;                    // automation date, local time
    _variant_t GetField(ULONG propTag) const;    // any property; empty when the message has none
    CRecipientCollection GetRecipients() const;
    CAttachmentCollection GetAttachments() const;

    // These take effect at once; `folder` is only borrowed.
    void Delete(LONG toDeletedItems) const;    // 1 to Deleted Items, 0 for good
    void CopyTo(const COleDispatchDriver& folder) const;
    CMailItem MoveTo(const COleDispatchDriver& folder) const;    // the moved message

    // These take effect with Save.
    void SetExpiryTime(DATE expiry) const;    // automation date, local time
    void SetFlagText(const std::wstring& text) const;
    void SetFlagStatus(LONG status) const;    // 2 flagged
    void Save() const;
};
