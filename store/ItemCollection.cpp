#include "store/ItemCollection.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

LONG CItemCollection::GetCount() const
{
    return GetProperty<LONG>(dispid::itemCollection::count);
}

CMailItem CItemCollection::GetItem(LONG index) const
{
    return CallMethod<CMailItem>(dispid::itemCollection::item, LongVariant(index));
}

CItemTable CItemCollection::GetTable() const
{
    return GetProperty<CItemTable>(dispid::itemCollection::table);
}
