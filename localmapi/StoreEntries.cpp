#include "localmapi/StoreEntries.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiFlags.h"
#include "localmapi/MapiFolder.h"
#include "localmapi/MapiMessage.h"
#include "localmapi/storage/Folders.h"

namespace
{
EntryId EntryToOpen(const SharedStore& store, ULONG size, const void* entryId)
{
    if (size == 0)
        return {store->uid, EntryKind::Folder, folder_id::root};
    return DecodeEntryIdOf(store->uid, size, entryId);
}

Microsoft::WRL::ComPtr<IUnknown> OpenObject(const SharedStore& store, const EntryId& entry, bool modify)
{
    if (entry.kind == EntryKind::Folder)
        return OpenFolderObject(store, entry.id, modify);
    if (entry.kind == EntryKind::Message)
        return OpenMessageObject(store, entry.id, modify);
    throw MapiError(MAPI_E_INVALID_ENTRYID);
}
}    // namespace

void OpenStoreEntry(const SharedStore& store, ULONG size, const void* entryId, const IID* iid, ULONG flags,
                    ULONG* objectType, IUnknown** entry)
{
    Given(entry) = nullptr;
    RequireKnownFlags(flags, MAPI_MODIFY | MAPI_DEFERRED_ERRORS | MAPI_BEST_ACCESS | mapi_flag::noCache |
                                 mapi_flag::showSoftDeletes);
    const EntryId named = EntryToOpen(store, size, entryId);
    const auto object = OpenObject(store, named, AsksToModify(flags));
    YieldInterface(*object.Get(), iid, entry);
    if (objectType)
        *objectType = static_cast<ULONG>(named.kind);
}

bool AsksToModify(ULONG flags)
{
    return (flags & (MAPI_MODIFY | MAPI_BEST_ACCESS)) != 0;
}

void YieldInterface(IUnknown& object, const IID* iid, IUnknown** result)
{
    if (FAILED(object.QueryInterface(iid ? *iid : IID_IUnknown, reinterpret_cast<void**>(result))))
        throw MapiError(MAPI_E_INTERFACE_NOT_SUPPORTED);
}
