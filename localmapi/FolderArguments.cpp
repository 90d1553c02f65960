#include "localmapi/FolderArguments.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/TextConversion.h"
#include "localmapi/storage/Folders.h"
#include "localmapi/storage/Messages.h"

#include <mapiguid.h>
#include <mapitags.h>
#include <wrl/client.h>

#include <algorithm>
#include <span>

std::vector<std::int64_t> MessageIdsOf(const StoreContext& store, const ENTRYLIST& list)
{
    std::vector<std::int64_t> ids;
    if (list.cValues > 0 && !list.lpbin)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    for (const SBinary& entryId : std::span(list.lpbin, list.cValues))
        ids.push_back(DecodeEntryIdOf(store.uid, EntryKind::Message, entryId.cb, entryId.lpb).id);
    return ids;
}

std::int64_t FolderIdOf(const StoreContext& store, void* folder)
{
    Microsoft::WRL::ComPtr<IMAPIFolder> destination;
    ThrowIfFailed(Given(static_cast<IUnknown*>(folder)).QueryInterface(IID_IMAPIFolder, &destination));
    SizedSPropTagArray(1, tags) = {1, {PR_ENTRYID}};
    ULONG count = 0;
    SPropValue* read = nullptr;
    const HRESULT result = destination->GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &read);
    const MapiBuffer<SPropValue> value(read);
    ThrowIfFailed(result);
    if (value->ulPropTag != PR_ENTRYID)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    return DecodeEntryIdOf(store.uid, EntryKind::Folder, value->Value.bin.cb, value->Value.bin.lpb).id;
}

std::string TextOfCaller(LPCTSTR text, ULONG flags)
{
    if (flags & MAPI_UNICODE)
        return Utf8FromWide(reinterpret_cast<const wchar_t*>(text));
    return Utf8FromWide(WideFromAnsi(reinterpret_cast<const char*>(text)));
}

void RequireChild(const StoreContext& store, std::int64_t parent, std::int64_t child)
{
    const std::vector<FolderPlace> children = ListFolders(*store.file, parent, false);
    if (std::ranges::find(children, child, &FolderPlace::id) == children.end())
        throw MapiError(MAPI_E_NOT_FOUND);
}

void RequireEmptyEnough(const StoreContext& store, std::int64_t folder, ULONG flags)
{
    if (!(flags & DEL_MESSAGES) && CountMessages(*store.file, folder) > 0)
        throw MapiError(MAPI_E_HAS_MESSAGES);
    if (!(flags & DEL_FOLDERS) && !ListFolders(*store.file, folder, false).empty())
        throw MapiError(MAPI_E_HAS_FOLDERS);
}
