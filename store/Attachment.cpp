#include "store/Attachment.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

std::wstring CAttachment::GetFileName() const
{
    return GetProperty<std::wstring>(dispid::attachment::fileName);
}

LONG CAttachmentCollection::GetCount() const
{
    return GetProperty<LONG>(dispid::attachmentCollection::count);
}

CAttachment CAttachmentCollection::GetItem(LONG index) const
{
    return GetProperty<CAttachment>(dispid::attachmentCollection::item, LongVariant(index));
}
