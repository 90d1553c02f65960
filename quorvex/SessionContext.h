#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/MapiOwners.h"

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

#include <map>
#include <memory>
#include <mutex>

using Microsoft::WRL::ComPtr;

class FolderSnapshotCache;

// What every object of one logged-on session shares. Objects hold it by shared_ptr; the last one to go lets
// the MAPI session go. Safe on any thread that MAPI is prepared for.
class SessionContext
{
public:
    explicit SessionContext(ComPtr<IMAPISession> session);
    ~SessionContext();
    SessionContext(const SessionContext&) = delete;
    SessionContext& operator=(const SessionContext&) = delete;

    IMAPISession* Session() const noexcept { return session.Get(); }

    // The profile's default store, opened by the first call. Throws MapiError when the profile has none.
    ComPtr<IMsgStore> DefaultStore();
    EntryIdBytes DefaultStoreId();

    // The store of that entry id, opened once; an empty id means the default store.
    ComPtr<IMsgStore> OpenStore(const EntryIdBytes& storeId);

    // The folder of `store` with that entry id; an empty id means the store's root.
    ComPtr<IMAPIFolder> OpenFolder(IMsgStore* store, const EntryIdBytes& folderId);

    // The rows of the folders that were searched or listed, for all collections and tables of the session.
    FolderSnapshotCache& Snapshots() noexcept { return *snapshots; }

private:
    EntryIdBytes FindDefaultStoreId();

    const ComPtr<IMAPISession> session;
    const std::unique_ptr<FolderSnapshotCache> snapshots;

    std::mutex mutex;    // what follows is written on any thread
    EntryIdBytes defaultStoreId;
    std::map<EntryIdBytes, ComPtr<IMsgStore>> stores;
};
