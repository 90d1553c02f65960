#include "store/MapiHelperStore.h"

#include "store/MapiHelperTables.h"
#include "store/MapiOwners.h"

#include <mapitags.h>

#include <span>

namespace
{
using Microsoft::WRL::ComPtr;

// What this system calls the special folders. The tags of Deleted Items and Sent Items, and with them their
// bits, stand under each other's names in MAPI's headers. They are kept so: whoever reads the two ids has
// always had them this way round.
namespace tag
{
constexpr ULONG validFolderMask = 0x35DF0003;
constexpr ULONG subtree = 0x35E00102;
constexpr ULONG outbox = 0x35E20102;
constexpr ULONG deletedItems = 0x35E40102;
constexpr ULONG sentItems = 0x35E30102;
constexpr ULONG fifthFolder = 0x36D70102;
}    // namespace tag

namespace valid_folder
{
constexpr ULONG outbox = 4;
constexpr ULONG deletedItems = 16;
constexpr ULONG sentItems = 8;
// Its own tag in the place of a bit: a mask with any of these bits has the fifth folder.
constexpr ULONG fifthFolder = tag::fifthFolder;
}    // namespace valid_folder

void KeepBinary(EntryIdBlock& block, const SPropValue& value) noexcept
{
    block.Keep(value.Value.bin.cb, value.Value.bin.lpb);
}

void KeepInbox(MapiHelper& helper, IMsgStore& store) noexcept
{
    wchar_t messageClass[] = L"IPM.Note";
    ULONG size = 0;
    ENTRYID* entryId = nullptr;
    const HRESULT result = store.GetReceiveFolder(messageClass, MAPI_UNICODE, &size, &entryId, nullptr);
    const auto owner = OwnMapiBuffer(helper, entryId);
    if (SUCCEEDED(result))
        helper.inboxEntryId.Keep(size, entryId);
}

void KeepFoldersOfMask(MapiHelper& helper, std::span<const SPropValue> values) noexcept
{
    const ULONG mask = values[0].ulPropTag == tag::validFolderMask ? values[0].Value.ul : 0;
    const auto keep = [&](const SPropValue& value, ULONG wantedTag, ULONG bits, EntryIdBlock& block)
    {
        // A folder that the mask has may still have come with an error in its id's place.
        if ((mask & bits) && value.ulPropTag == wantedTag)
            KeepBinary(block, value);
    };
    keep(values[1], tag::outbox, valid_folder::outbox, helper.outboxEntryId);
    keep(values[2], tag::deletedItems, valid_folder::deletedItems, helper.deletedItemsEntryId);
    keep(values[3], tag::sentItems, valid_folder::sentItems, helper.sentItemsEntryId);
    keep(values[4], tag::fifthFolder, valid_folder::fifthFolder, helper.fifthFolderEntryId);
}

void KeepSpecialFolders(MapiHelper& helper, IMsgStore& store) noexcept
{
    constexpr ULONG wanted = 5;
    SizedSPropTagArray(wanted, tags) = {
        wanted, {tag::validFolderMask, tag::outbox, tag::deletedItems, tag::sentItems, tag::fifthFolder}};
    ULONG count = 0;
    SPropValue* values = nullptr;
    // MAPI_W_ERRORS_RETURNED, a success, says no more than that some of the values are errors.
    const HRESULT result = store.GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &values);
    const auto owner = OwnMapiBuffer(helper, values);
    if (SUCCEEDED(result) && values && count == wanted)
        KeepFoldersOfMask(helper, {values, count});
}

void KeepSubtree(MapiHelper& helper, IMsgStore& store) noexcept
{
    if (!helper.hrGetOneProp)
        return;
    SPropValue* value = nullptr;
    const HRESULT result = helper.hrGetOneProp(&store, tag::subtree, &value);
    const auto owner = OwnMapiBuffer(helper, value);
    if (SUCCEEDED(result) && value && PROP_TYPE(value->ulPropTag) == PT_BINARY)
        KeepBinary(helper.subtreeEntryId, *value);
}

// Asking takes the error out of the session; there is nobody to show it to.
void ReportError(const MapiHelper& helper, HRESULT result) noexcept
{
    MAPIERROR* error = nullptr;
    helper.mapiSession->GetLastError(result, MAPI_UNICODE, &error);
    OwnMapiBuffer(helper, error);
}

void OpenStore(MapiHelper& helper, const SBinary& entryId) noexcept
{
    ComPtr<IMsgStore> opened;
    const HRESULT result =
        helper.mapiSession->OpenMsgStore(0, entryId.cb, reinterpret_cast<ENTRYID*>(entryId.lpb), nullptr,
                                         MAPI_BEST_ACCESS, opened.ReleaseAndGetAddressOf());
    if (FAILED(result) || !opened)
        return ReportError(helper, result);
    publishedMapiStore = opened.Get();
    helper.defaultStore = opened;
    KeepInbox(helper, *opened.Get());
    KeepSpecialFolders(helper, *opened.Get());
    KeepSubtree(helper, *opened.Get());
}

void OpenIfDefault(MapiHelper& helper, const SRow& row) noexcept
{
    const SPropValue* const entryId = FindColumn(row, 0, PR_ENTRYID);
    const SPropValue* const isDefault = FindColumn(row, 3, PR_DEFAULT_STORE);
    if (entryId && FindColumn(row, 2, PR_DISPLAY_NAME_W) && isDefault && isDefault->Value.b)
        OpenStore(helper, entryId->Value.bin);
}
}    // namespace

void OpenDefaultStore(MapiHelper& helper) noexcept
{
    ComPtr<IMAPITable> table;
    if (FAILED(helper.mapiSession->GetMsgStoresTable(0, table.ReleaseAndGetAddressOf())) || !table)
        return;
    SizedSPropTagArray(4, columns) = {4,
                                      {PR_ENTRYID, PR_RESOURCE_FLAGS, PR_DISPLAY_NAME_W, PR_DEFAULT_STORE}};
    const RowSet rows = QueryAllRows(helper, table.Get(), reinterpret_cast<SPropTagArray*>(&columns));
    if (!rows)
        return;
    for (const SRow& row : std::span(rows->aRow, rows->cRows))
        OpenIfDefault(helper, row);
}
