#include "quorvex/ItemCollection.h"

#include "contracts/DispatchIds.h"
#include "quorvex/CollectionIndex.h"
#include "quorvex/FolderSnapshot.h"
#include "quorvex/FolderSnapshotCache.h"
#include "quorvex/ItemTable.h"
#include "quorvex/MailItem.h"

CItemCollection::CItemCollection(std::shared_ptr<SessionContext> context, ComPtr<IMsgStore> itsStore,
                                 ComPtr<IMAPIFolder> itsFolder, EntryIdBytes itsId)
    : session(std::move(context)),
      store(std::move(itsStore)),
      folder(std::move(itsFolder)),
      folderId(std::move(itsId))
{
}

std::span<const Operation> CItemCollection::Operations() const noexcept
{
    static constexpr Operation operations[] = {
        Get<&CItemCollection::GetCount>(dispid::itemCollection::count),
        Method<&CItemCollection::GetItem>(dispid::itemCollection::item),
        Get<&CItemCollection::GetTable>(dispid::itemCollection::table),
    };
    return operations;
}

std::shared_ptr<FolderSnapshot> CItemCollection::Rows()
{
    const std::lock_guard lock(mutex);
    if (!snapshot)
        snapshot = session->Snapshots().Get(folder.Get(), folderId);
    return snapshot;
}

long CItemCollection::GetCount()
{
    {
        const std::lock_guard lock(mutex);
        if (snapshot)
            return static_cast<long>(snapshot->Count());
    }
    return static_cast<long>(session->Snapshots().CountOf(folder.Get(), folderId));
}

ComPtr<IDispatch> CItemCollection::GetItem(const VARIANT& index)
{
    const std::shared_ptr<FolderSnapshot> rows = Rows();
    return MakeObject<CMailItem>(session, store, rows->EntryId(PlaceOf(index, rows->Count())), folder);
}

ComPtr<IDispatch> CItemCollection::GetTable()
{
    return MakeItemTable(session, Rows());
}
