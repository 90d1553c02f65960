#include "store/MailItem.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

std::wstring CMailItem::GetEntryId() const
{
    return GetProperty<std::wstring>(dispid::mailItem::entryId);
}

std::wstring CMailItem::GetSubject() const
{
    return GetProperty<std::wstring>(dispid::mailItem::subject);
}

std::wstring CMailItem::GetBodyText() const
{
    return GetProperty<std::wstring>(dispid::mailItem::bodyText);
}

std::wstring CMailItem::GetSenderEmail() const
{
    return GetProperty<std::wstring>(dispid::mailItem::senderEmail);
}

std::wstring CMailItem::GetSenderName() const
{
    return GetProperty<std::wstring>(dispid::mailItem::senderName);
}

DATE CMailItem::GetSentTime() const
{
    return GetProperty<DATE>(dispid::mailItem::sentTime);
}

_variant_t CMailItem::GetField(ULONG propTag) const
{
    return GetProperty<_variant_t>(dispid::mailItem::field, LongVariant(static_cast<LONG>(propTag)));
}

CRecipientCollection CMailItem::GetRecipients() const
{
    return GetProperty<CRecipientCollection>(dispid::mailItem::recipients);
}

CAttachmentCollection CMailItem::GetAttachments() const
{
    return GetProperty<CAttachmentCollection>(dispid::mailItem::attachments);
}

void CMailItem::Delete(LONG toDeletedItems) const
{
    CallMethod<void>(dispid::mailItem::deleteItem, LongVariant(toDeletedItems));
}

void CMailItem::CopyTo(const COleDispatchDriver& folder) const
{
    CallMethod<void>(dispid::mailItem::copyTo, DispatchVariant(folder.GetDispatch()));
}

CMailItem CMailItem::MoveTo(const COleDispatchDriver& folder) const
{
    return CallMethod<CMailItem>(dispid::mailItem::moveTo, DispatchVariant(folder.GetDispatch()));
}

void CMailItem::SetExpiryTime(DATE expiry) const
{
    PutProperty(dispid::mailItem::expiryTime, DateVariant(expiry));
}

void CMailItem::SetFlagText(const std::wstring& text) const
{
    PutProperty(dispid::mailItem::flagText, TextVariant(text));
}

void CMailItem::SetFlagStatus(LONG status) const
{
    PutProperty(dispid::mailItem::flagStatus, LongVariant(status));
}

void CMailItem::Save() const
{
    CallMethod<void>(dispid::mailItem::save);
}
