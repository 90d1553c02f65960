#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapicode.h>
#include <mapitags.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <span>

namespace fake
{
namespace
{
// Rows as they were when the table was opened. What it cannot do it says by MAPI_E_NO_SUPPORT, which is also
// how a caller that restricts or sorts the table is found out.
class FakeTable : public Unknown<IMAPITable>
{
public:
    FakeTable(std::vector<Properties> tableRows, TableHabits tableHabits,
              std::shared_ptr<Counters> tableCounters)
        : Unknown({&IID_IUnknown, &IID_IMAPITable}),
          rows(std::move(tableRows)),
          habits(std::move(tableHabits)),
          counters(std::move(tableCounters))
    {
    }

    STDMETHODIMP GetLastError(HRESULT, ULONG, MAPIERROR** error) override { return GiveLastError({}, error); }
    STDMETHODIMP Advise(ULONG, IMAPIAdviseSink*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Unadvise(ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetStatus(ULONG*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetColumns(SPropTagArray* tags, ULONG) override
    {
        for (const ULONG tag : std::span(tags->aulPropTag, tags->cValues))
            if (const auto refused = habits.refusedColumns.find(UnicodeTag(tag));
                refused != habits.refusedColumns.end())
                return refused->second;
        columns.assign(tags->aulPropTag, tags->aulPropTag + tags->cValues);
        return S_OK;
    }
    STDMETHODIMP QueryColumns(ULONG, SPropTagArray**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetRowCount(ULONG, ULONG* count) override
    {
        *count = static_cast<ULONG>(rows.size());
        return S_OK;
    }
    STDMETHODIMP SeekRow(BOOKMARK origin, LONG count, LONG* sought) override
    {
        if (origin != BOOKMARK_BEGINNING || count < 0)
            return MAPI_E_NO_SUPPORT;
        next = std::min<std::size_t>(static_cast<std::size_t>(count), rows.size());
        if (sought)
            *sought = static_cast<LONG>(next);
        return S_OK;
    }
    STDMETHODIMP SeekRowApprox(ULONG, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryPosition(ULONG*, ULONG*, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FindRow(SRestriction*, BOOKMARK, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Restrict(SRestriction*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP CreateBookmark(BOOKMARK*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP FreeBookmark(BOOKMARK) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SortTable(SSortOrderSet*, ULONG) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QuerySortOrder(SSortOrderSet**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP QueryRows(LONG rowCount, ULONG, SRowSet** given) override;
    STDMETHODIMP Abort() override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP ExpandRow(ULONG, BYTE*, ULONG, ULONG, SRowSet**, ULONG*) override
    {
        return MAPI_E_NO_SUPPORT;
    }
    STDMETHODIMP CollapseRow(ULONG, BYTE*, ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP WaitForCompletion(ULONG, ULONG, ULONG*) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetCollapseState(ULONG, ULONG, BYTE*, ULONG*, BYTE**) override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP SetCollapseState(ULONG, ULONG, BYTE*, BOOKMARK*) override { return MAPI_E_NO_SUPPORT; }

private:
    SRow MakeRow(const Properties& properties) const;
    SPropValue MakeColumn(const Properties& properties, ULONG tag, void* parent) const;

    std::vector<Properties> rows;
    TableHabits habits;
    std::shared_ptr<Counters> counters;
    std::vector<ULONG> columns;
    std::size_t next = 0;
};

STDMETHODIMP FakeTable::QueryRows(LONG rowCount, ULONG, SRowSet** given)
{
    *given = nullptr;
    if (rowCount < 0)
        return MAPI_E_NO_SUPPORT;
    if (FAILED(habits.queryRows))
        return habits.queryRows;
    if (habits.rowsAtOnce)
        rowCount = std::min(rowCount, habits.rowsAtOnce);
    const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(rowCount), rows.size() - next);
    void* block = nullptr;
    if (FAILED(FakeMapiMemory::Allocate(static_cast<ULONG>(sizeof(SRowSet) + count * sizeof(SRow)), &block)))
        return MAPI_E_NOT_ENOUGH_MEMORY;
    *given = static_cast<SRowSet*>(block);
    for (; (*given)->cRows < count; ++next)
        (*given)->aRow[(*given)->cRows++] = MakeRow(rows[next]);
    counters->rowsRead += count;
    return S_OK;
}

SRow FakeTable::MakeRow(const Properties& properties) const
{
    void* block = nullptr;
    FakeMapiMemory::Allocate(static_cast<ULONG>(columns.size() * sizeof(SPropValue)), &block);
    SRow row{};
    row.lpProps = static_cast<SPropValue*>(block);
    for (const ULONG tag : columns)
        row.lpProps[row.cValues++] = MakeColumn(properties, tag, block);
    return row;
}

SPropValue FakeTable::MakeColumn(const Properties& properties, ULONG tag, void* parent) const
{
    if (const auto error = habits.errorColumns.find(UnicodeTag(tag)); error != habits.errorColumns.end())
        return MakeProp(tag, nullptr, error->second, parent);
    const Value* value = Find(properties, tag);
    const auto* text = value ? std::get_if<std::wstring>(value) : nullptr;
    if (!text || !habits.cutTextAt || text->size() <= habits.cutTextAt)
        return MakeProp(tag, value, MAPI_E_NOT_FOUND, parent);
    const Value cut = text->substr(0, habits.cutTextAt);
    return MakeProp(tag, &cut, MAPI_E_NOT_FOUND, parent);
}

Properties Numbered(Properties properties, ULONG tag, std::size_t number)
{
    properties[tag] = static_cast<std::int32_t>(number);
    return properties;
}

std::vector<Properties> NumberedRows(const std::vector<Properties>& objects, ULONG tag)
{
    std::vector<Properties> rows;
    for (const Properties& properties : objects)
        rows.push_back(Numbered(properties, tag, rows.size()));
    return rows;
}
}    // namespace

Microsoft::WRL::ComPtr<IMAPITable> MakeTable(std::vector<Properties> rows, TableHabits habits,
                                             std::shared_ptr<Counters> counters)
{
    ++counters->tablesOpened;
    return Make<FakeTable>(std::move(rows), std::move(habits), std::move(counters));
}

FakeAttach::FakeAttach(std::shared_ptr<Message> owner, std::size_t place,
                       std::shared_ptr<Counters> storeCounters)
    : MapiProp({&IID_IUnknown, &IID_IMAPIProp, &IID_IAttachment}),
      message(std::move(owner)),
      number(place)
{
    counters = std::move(storeCounters);
    ++counters->attachmentsOpened;
}

FakeMessage::FakeMessage(std::shared_ptr<Message> data, std::shared_ptr<Counters> storeCounters)
    : MapiProp({&IID_IUnknown, &IID_IMAPIProp, &IID_IMessage}),
      message(std::move(data))
{
    counters = std::move(storeCounters);
    ++counters->messagesOpened;
}

STDMETHODIMP FakeMessage::GetAttachmentTable(ULONG, IMAPITable** table)
{
    *table = nullptr;
    if (FAILED(message->attachmentTable.open))
        return message->attachmentTable.open;
    *table = MakeTable(NumberedRows(message->attachments, PR_ATTACH_NUM), message->attachmentTable, counters)
                 .Detach();
    return S_OK;
}

STDMETHODIMP FakeMessage::OpenAttach(ULONG number, const IID*, ULONG, IAttach** attach)
{
    *attach = nullptr;
    if (number >= message->attachments.size())
        return MAPI_E_NOT_FOUND;
    *attach = Make<FakeAttach>(message, number, counters).Detach();
    return S_OK;
}

STDMETHODIMP FakeMessage::GetRecipientTable(ULONG, IMAPITable** table)
{
    *table = nullptr;
    if (FAILED(message->recipientTable.open))
        return message->recipientTable.open;
    *table =
        MakeTable(NumberedRows(message->recipients, PR_ROWID), message->recipientTable, counters).Detach();
    return S_OK;
}

FakeFolder::FakeFolder(std::shared_ptr<Folder> data)
    : MapiProp({&IID_IUnknown, &IID_IMAPIProp, &IID_IMAPIContainer, &IID_IMAPIFolder}),
      folder(std::move(data))
{
    counters = folder->counters;
}

Properties FakeFolder::Current()
{
    Properties properties = folder->properties;
    properties[PR_ENTRYID] = folder->entryId;
    if (!folder->hidesCount)
        properties[PR_CONTENT_COUNT] = static_cast<std::int32_t>(folder->messages.size());
    return properties;
}

STDMETHODIMP FakeFolder::GetContentsTable(ULONG, IMAPITable** table)
{
    *table = nullptr;
    if (FAILED(folder->table.open))
        return folder->table.open;
    std::vector<Properties> rows;
    for (const auto& message : folder->messages)
    {
        rows.push_back(message->properties);
        rows.back()[PR_ENTRYID] = message->entryId;
    }
    *table = MakeTable(std::move(rows), folder->table, counters).Detach();
    return S_OK;
}

STDMETHODIMP FakeFolder::OpenEntry(ULONG size, ENTRYID* id, const IID*, ULONG, ULONG* type, IUnknown** object)
{
    *object = nullptr;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(id);
    const Bytes wanted(bytes, bytes + size);
    const auto found = std::ranges::find_if(folder->messages,
                                            [&](const auto& message) { return message->entryId == wanted; });
    if (found == folder->messages.end())
        return MAPI_E_NOT_FOUND;
    if (FAILED((*found)->open))
        return (*found)->open;
    *type = MAPI_MESSAGE;
    *object = Make<FakeMessage>(*found, counters).Detach();
    return S_OK;
}

STDMETHODIMP FakeFolder::DeleteMessages(ENTRYLIST* ids, ULONG, IMAPIProgress*, ULONG)
{
    for (const SBinary& id : std::span(ids->lpbin, ids->cValues))
        std::erase_if(folder->messages,
                      [&](const auto& message) { return message->entryId == Bytes(id.lpb, id.lpb + id.cb); });
    return S_OK;
}

std::shared_ptr<Message> AddMessage(Folder& folder, Properties properties)
{
    static std::atomic<std::uint32_t> last = 0;
    const std::uint32_t number = ++last;
    auto message = std::make_shared<Message>();
    message->entryId = {0, 0, 0, 0};
    for (int shift = 0; shift < 32; shift += 8)
        message->entryId.push_back(static_cast<std::uint8_t>(number >> shift));
    message->properties = std::move(properties);
    folder.messages.push_back(message);
    return message;
}
}    // namespace fake
