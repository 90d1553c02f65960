#include "quorvex/SessionContext.h"

#include "quorvex/FolderSnapshotCache.h"
#include "quorvex/MapiError.h"
#include "quorvex/TableReader.h"

#include <mapicode.h>
#include <mapitags.h>

SessionContext::SessionContext(ComPtr<IMAPISession> mapiSession)
    : session(std::move(mapiSession)),
      snapshots(std::make_unique<FolderSnapshotCache>())
{
}

SessionContext::~SessionContext()
{
    session->Logoff(0, 0, 0);
}

ComPtr<IMsgStore> SessionContext::DefaultStore()
{
    return OpenStore({});
}

EntryIdBytes SessionContext::DefaultStoreId()
{
    const std::lock_guard lock(mutex);
    if (defaultStoreId.empty())
        defaultStoreId = FindDefaultStoreId();
    return defaultStoreId;
}

EntryIdBytes SessionContext::FindDefaultStoreId()
{
    ComPtr<IMAPITable> table;
    CheckMapi(session->GetMsgStoresTable(0, &table), session.Get(), L"list the profile's message stores");
    const ULONG columns[] = {PR_ENTRYID, PR_DEFAULT_STORE};
    EntryIdBytes id;
    ReadRows(table.Get(), columns, std::size(columns),
             [&](TableRow row)
             {
                 if (row[0] && row[1] && row[1]->Value.b)
                     id = IdOf(row[0]->Value.bin);
             });
    if (!id.empty())
        return id;
    throw MapiError(MAPI_E_NOT_FOUND,
                    L"The mail profile has no default message store. Add one to the profile, in "
                    L"the Control Panel under Mail, and try again.");
}

ComPtr<IMsgStore> SessionContext::OpenStore(const EntryIdBytes& storeId)
{
    const EntryIdBytes id = storeId.empty() ? DefaultStoreId() : storeId;
    const std::lock_guard lock(mutex);
    ComPtr<IMsgStore>& store = stores[id];
    if (!store)
        CheckMapi(session->OpenMsgStore(0, static_cast<ULONG>(id.size()), AsEntryId(id), nullptr,
                                        MDB_NO_DIALOG | MAPI_BEST_ACCESS, &store),
                  session.Get(), L"open the message store");
    return store;
}

ComPtr<IMAPIFolder> SessionContext::OpenFolder(IMsgStore* store, const EntryIdBytes& folderId)
{
    ULONG type = 0;
    ComPtr<IUnknown> object;
    CheckMapi(store->OpenEntry(static_cast<ULONG>(folderId.size()),
                               folderId.empty() ? nullptr : AsEntryId(folderId), nullptr, MAPI_BEST_ACCESS,
                               &type, &object),
              store, L"open the folder");
    ComPtr<IMAPIFolder> folder;
    if (type != MAPI_FOLDER || FAILED(object->QueryInterface(IID_IMAPIFolder, &folder)))
        throw MapiError(MAPI_E_INVALID_OBJECT, L"The entry id is not a folder's.");
    return folder;
}
