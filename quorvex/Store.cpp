#include "quorvex/Store.h"

#include "contracts/DispatchIds.h"
#include "quorvex/Folder.h"
#include "quorvex/PropertyReader.h"

#include <mapitags.h>

CStoreCollection::CStoreCollection(std::shared_ptr<SessionContext> context) : session(std::move(context)) {}

std::span<const Operation> CStoreCollection::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CStoreCollection::GetDefaultStore>(dispid::storeCollection::defaultStore),
    };
    return operations;
}

ComPtr<IDispatch> CStoreCollection::GetDefaultStore()
{
    return MakeObject<CStore>(session);
}

CStore::CStore(std::shared_ptr<SessionContext> context)
    : session(std::move(context)),
      store(session->DefaultStore())
{
}

std::span<const Operation> CStore::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CStore::GetEntryId>(dispid::store::entryId),
        Get<&CStore::GetRootFolder>(dispid::store::rootFolder),
    };
    return operations;
}

std::wstring CStore::GetEntryId()
{
    return ToHex(session->DefaultStoreId());
}

ComPtr<IDispatch> CStore::GetRootFolder()
{
    const auto visibleTop = ReadBinary(store.Get(), PR_IPM_SUBTREE_ENTRYID);
    return MakeObject<CFolder>(session, store, visibleTop.value_or(EntryIdBytes()));
}
