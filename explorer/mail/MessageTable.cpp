#include "explorer/mail/MessageTable.h"

#include "explorer/mail/MapiLibrary.h"

#include <windows.h>

#include <mapitags.h>

#include <algorithm>
#include <span>
#include <utility>

namespace
{
constexpr std::size_t batchSize = 200;
constexpr std::size_t keptBatches = 8;

// Outlook's, which MAPI's headers do not list: 2 is flagged.
constexpr ULONG flagStatusTag = PROP_TAG(PT_LONG, 0x1090);
constexpr LONG flagged = 2;

enum Column : ULONG
{
    entryId,
    senderName,
    senderAddress,
    subject,
    deliveryTime,
    submitTime,
    size,
    flags,
    flagStatus,
    expiryTime,
    columnCount
};

constexpr SizedSPropTagArray(columnCount, columns) = {
    columnCount,
    {PR_ENTRYID, PR_SENDER_NAME_W, PR_SENDER_EMAIL_ADDRESS_W, PR_SUBJECT_W, PR_MESSAGE_DELIVERY_TIME,
     PR_CLIENT_SUBMIT_TIME, PR_MESSAGE_SIZE, PR_MESSAGE_FLAGS, flagStatusTag, PR_EXPIRY_TIME}};

bool HasCome(const std::optional<FILETIME>& time)
{
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    return time && ::CompareFileTime(&*time, &now) <= 0;
}

MessageRow RowOf(const MapiValues& values)
{
    MessageRow row;
    row.id = values.Id(entryId);
    row.sender = values.Text(senderName);
    if (row.sender.empty())
        row.sender = values.Text(senderAddress);
    row.subject = values.Text(subject);
    const auto delivered = values.Time(deliveryTime);
    row.received = delivered ? *delivered : values.Time(submitTime).value_or(FILETIME{});
    row.size = values.Number(size).value_or(0);
    row.unread = (values.Number(flags).value_or(MSGFLAG_READ) & MSGFLAG_READ) == 0;
    row.flagged = values.Number(flagStatus) == flagged;
    row.expired = HasCome(values.Time(expiryTime));
    return row;
}

ULONG TagOf(MessageOrder::Key key)
{
    switch (key)
    {
    case MessageOrder::Key::sender:
        return PR_SENDER_NAME_W;
    case MessageOrder::Key::subject:
        return PR_SUBJECT_W;
    case MessageOrder::Key::size:
        return PR_MESSAGE_SIZE;
    default:
        return PR_MESSAGE_DELIVERY_TIME;
    }
}
}    // namespace

MessageTable::MessageTable(Microsoft::WRL::ComPtr<IMAPITable> contents) : table(std::move(contents))
{
    auto asked = columns;
    CheckMapi(table->SetColumns(reinterpret_cast<SPropTagArray*>(&asked), 0),
              L"read the messages of a folder");
    ULONG rows = 0;
    CheckMapi(table->GetRowCount(0, &rows), L"count the messages of a folder");
    count = rows;
}

bool MessageTable::Sort(const MessageOrder& order)
{
    const ULONG direction = order.descending ? TABLE_SORT_DESCEND : TABLE_SORT_ASCEND;
    SizedSSortOrderSet(2, keys) = {
        2, 0, 0, {{TagOf(order.key), direction}, {PR_MESSAGE_DELIVERY_TIME, TABLE_SORT_DESCEND}}};
    if (order.key == MessageOrder::Key::received)
        keys.cSorts = 1;
    if (!table || FAILED(table->SortTable(reinterpret_cast<SSortOrderSet*>(&keys), 0)))
        return false;
    batches.clear();
    return true;
}

std::optional<std::size_t> MessageTable::FindRow(const EntryId& message)
{
    if (!table || message.empty())
        return std::nullopt;
    SPropValue id{};
    id.ulPropTag = PR_ENTRYID;
    id.Value.bin = {static_cast<ULONG>(message.size()), reinterpret_cast<BYTE*>(AsEntryId(message))};
    SRestriction sought{};
    sought.rt = RES_PROPERTY;
    sought.res.resProperty = {RELOP_EQ, PR_ENTRYID, &id};
    ULONG row = 0;
    ULONG numerator = 0;
    ULONG denominator = 0;
    if (FAILED(table->FindRow(&sought, BOOKMARK_BEGINNING, 0)) ||
        FAILED(table->QueryPosition(&row, &numerator, &denominator)) || row >= count)
        return std::nullopt;
    return row;
}

const MessageRow& MessageTable::GetRow(std::size_t row)
{
    static const MessageRow gone;
    const std::size_t first = row - row % batchSize;
    const Batch& batch = FindBatch(first);
    return row - first < batch.rows.size() ? batch.rows[row - first] : gone;
}

const MessageTable::Batch& MessageTable::FindBatch(std::size_t first)
{
    const auto found = std::ranges::find(batches, first, &Batch::first);
    if (found != batches.end())
    {
        batches.splice(batches.begin(), batches, found);
        return batches.front();
    }
    batches.push_front({first, ReadRows(first)});
    if (batches.size() > keptBatches)
        batches.pop_back();
    return batches.front();
}

std::vector<MessageRow> MessageTable::ReadRows(std::size_t first)
{
    std::vector<MessageRow> read;
    if (first >= count)
        return read;
    CheckMapi(table->SeekRow(BOOKMARK_BEGINNING, static_cast<LONG>(first), nullptr),
              L"go to a message of a folder");
    // A store may hand out fewer rows than it is asked for.
    while (read.size() < batchSize)
    {
        RowSet rows;
        CheckMapi(table->QueryRows(static_cast<LONG>(batchSize - read.size()), 0, Out(rows)),
                  L"read the messages of a folder");
        if (!rows || rows->cRows == 0)
            break;
        for (const SRow& row : std::span(rows->aRow, rows->cRows))
            read.push_back(RowOf({row.lpProps, row.cValues}));
    }
    return read;
}
