#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/EntryId.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <memory>
#include <mutex>

class FolderSnapshot;

// The messages of a folder in its contents table's order, counted from 1. From the first Item or Table on
// they are the ones that the folder had then; until then Count follows the folder.
class CItemCollection final : public CDispatchObject
{
public:
    CItemCollection(std::shared_ptr<SessionContext> session, ComPtr<IMsgStore> store,
                    ComPtr<IMAPIFolder> folder, EntryIdBytes folderId);

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    long GetCount();
    ComPtr<IDispatch> GetItem(const VARIANT& index);
    ComPtr<IDispatch> GetTable();

    std::shared_ptr<FolderSnapshot> Rows();

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
    const ComPtr<IMAPIFolder> folder;
    const EntryIdBytes folderId;

    std::mutex mutex;
    std::shared_ptr<FolderSnapshot> snapshot;    // guarded by mutex; never changed once there
};
