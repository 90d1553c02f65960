#include "store/Recipient.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

LONG CRecipient::GetType() const
{
    return GetProperty<LONG>(dispid::recipient::type);
}

std::wstring CRecipient::GetName() const
{
    return GetProperty<std::wstring>(dispid::recipient::name);
}

LONG CRecipientCollection::GetCount() const
{
    return GetProperty<LONG>(dispid::recipientCollection::count);
}

CRecipient CRecipientCollection::GetItem(LONG index) const
{
    return GetProperty<CRecipient>(dispid::recipientCollection::item, LongVariant(index));
}
