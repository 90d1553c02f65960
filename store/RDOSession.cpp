#include "store/RDOSession.h"

#include "contracts/DispatchIds.h"
#include "win/Variant.h"

void CRDOSession::LogOn() const
{
    CallMethod<void>(dispid::session::logOn, TextVariant({}), LongVariant(0), MissingVariant(),
                     MissingVariant(), LongVariant(0), MissingVariant());
}

CStoreCollection CRDOSession::GetStores() const
{
    return GetProperty<CStoreCollection>(dispid::session::stores);
}

CMailItem CRDOSession::GetItemFromId(const std::wstring& entryId, const _variant_t& storeEntryId,
                                     const _variant_t& accessFlags) const
{
    return CallMethod<CMailItem>(dispid::session::getItemFromId, TextVariant(entryId), storeEntryId,
                                 accessFlags);
}
