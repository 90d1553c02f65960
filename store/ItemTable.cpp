#include "store/ItemTable.h"

#include "contracts/DispatchIds.h"

void CItemTable::SetColumns(const VARIANT& propTags) const
{
    PutProperty(dispid::itemTable::columns, propTags);
}

_variant_t CItemTable::GetRow() const
{
    return CallMethod<_variant_t>(dispid::itemTable::getRow);
}

CTableFilter CItemTable::GetFilter() const
{
    return GetProperty<CTableFilter>(dispid::itemTable::filter);
}
