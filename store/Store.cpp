#include "store/Store.h"

#include "contracts/DispatchIds.h"

std::wstring CStore::GetEntryId() const
{
    return GetProperty<std::wstring>(dispid::store::entryId);
}

CFolder CStore::GetRootFolder() const
{
    return GetProperty<CFolder>(dispid::store::rootFolder);
}

CStore CStoreCollection::GetDefaultStore() const
{
    return GetProperty<CStore>(dispid::storeCollection::defaultStore);
}
