#include "quorvex/MessageTransfer.h"

#include "quorvex/MapiError.h"
#include "quorvex/PropertyReader.h"
#include "quorvex/TableReader.h"

#include <mapicode.h>
#include <mapitags.h>

#include <algorithm>

namespace
{
SBinary BinaryOf(const EntryIdBytes& id)
{
    return {static_cast<ULONG>(id.size()), const_cast<std::uint8_t*>(id.data())};
}

void CheckWhole(HRESULT result, IMAPIFolder* folder, const wchar_t* step)
{
    CheckMapi(result, folder, step);
    if (result == MAPI_W_PARTIAL_COMPLETION)
        ThrowMapiError(MAPI_E_CALL_FAILED, nullptr, step);
}
}    // namespace

void TransferMessage(IMAPIFolder* from, const EntryIdBytes& messageId, IMAPIFolder* to, Transfer transfer)
{
    SBinary message = BinaryOf(messageId);
    ENTRYLIST list{1, &message};
    CheckWhole(from->CopyMessages(&list, &IID_IMAPIFolder, to, 0, nullptr, static_cast<ULONG>(transfer)),
               from, transfer == Transfer::Move ? L"move the message" : L"copy the message");
}

void DeleteMessage(IMAPIFolder* from, const EntryIdBytes& messageId)
{
    SBinary message = BinaryOf(messageId);
    ENTRYLIST list{1, &message};
    CheckWhole(from->DeleteMessages(&list, 0, nullptr, 0), from, L"delete the message");
}

bool IsSameEntry(IMAPISession* session, const EntryIdBytes& first, const EntryIdBytes& second)
{
    if (first == second)
        return true;
    ULONG same = FALSE;
    const HRESULT result =
        session->CompareEntryIDs(static_cast<ULONG>(first.size()), AsEntryId(first),
                                 static_cast<ULONG>(second.size()), AsEntryId(second), 0, &same);
    return SUCCEEDED(result) && same;    // ids of different stores cannot be compared, and differ
}

bool LiesIn(SessionContext& session, IMsgStore* store, const EntryIdBytes& messageId,
            const EntryIdBytes& folderId)
try
{
    ULONG type = 0;
    ComPtr<IUnknown> object;
    ComPtr<IMAPIProp> message;
    if (FAILED(store->OpenEntry(static_cast<ULONG>(messageId.size()), AsEntryId(messageId), nullptr,
                                MAPI_BEST_ACCESS, &type, &object)) ||
        type != MAPI_MESSAGE || FAILED(object->QueryInterface(IID_IMAPIProp, &message)))
        return false;
    const auto parent = ReadBinary(message.Get(), PR_PARENT_ENTRYID);
    return parent && IsSameEntry(session.Session(), *parent, folderId);
}
catch (const MapiError&)
{
    return false;    // the message does not say where it lies
}

std::optional<EntryIdBytes> LastWithSearchKey(IMAPIFolder* folder, const std::vector<std::uint8_t>& searchKey)
{
    ComPtr<IMAPITable> table;
    CheckMapi(folder->GetContentsTable(0, &table), folder, L"list the folder's messages");
    const ULONG columns[] = {PR_ENTRYID, PR_SEARCH_KEY};
    std::optional<EntryIdBytes> last;
    ReadRows(table.Get(), columns, 1,
             [&](TableRow row)
             {
                 if (row[0] && row[1] && std::ranges::equal(BytesOf(row[1]->Value.bin), searchKey))
                     last = IdOf(row[0]->Value.bin);
             });
    return last;
}
