#include "quorvex/SnapshotRows.h"

#include "quorvex/CaseFolding.h"
#include "quorvex/MapiError.h"
#include "quorvex/MapiTags.h"
#include "quorvex/MessageGone.h"
#include "quorvex/PropVariant.h"
#include "quorvex/TableReader.h"

#include <mapicode.h>
#include <mapiguid.h>
#include <mapitags.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace
{
using Microsoft::WRL::ComPtr;

constexpr std::array<ColumnKey, 3> indexedColumns{
    {{PR_SUBJECT_W, false}, {PR_SENDER_EMAIL_ADDRESS_W, false}, {PR_SENDER_NAME_W, false}}};

// Two numbers that no property has.
constexpr std::int64_t unknownNumber = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t missingNumber = unknownNumber + 1;

// How far ahead of the row asked for last another one is looked for first.
constexpr std::uint32_t nearRows = 4;

// Tables cut what is longer than this.
constexpr std::size_t tableBinaryLimit = 255;

// Reading these through the table would read every message's whole text for a cut of it.
bool IsLong(ULONG tag)
{
    return tag == PR_BODY_W || tag == PR_TRANSPORT_MESSAGE_HEADERS_W;
}

ComPtr<IMAPITable> OpenContents(IMAPIFolder* folder)
{
    ComPtr<IMAPITable> table;
    HRESULT result = folder->GetContentsTable(MAPI_UNICODE, table.GetAddressOf());
    if (result == MAPI_E_BAD_CHARWIDTH)
        result = folder->GetContentsTable(0, table.ReleaseAndGetAddressOf());
    CheckMapi(result, folder, L"list the messages of a folder");
    return table;
}
}    // namespace

void ByteArena::Set(std::size_t number, std::span<const std::uint8_t> value)
{
    if (bytes.size() + value.size() > std::numeric_limits<std::uint32_t>::max())
        throw std::bad_alloc();
    slices[number] = {static_cast<std::uint32_t>(bytes.size()), static_cast<std::uint32_t>(value.size())};
    bytes.insert(bytes.end(), value.begin(), value.end());
}

void ByteArena::Shrink()
{
    bytes.shrink_to_fit();
    slices.shrink_to_fit();
}

std::span<const std::uint8_t> ByteArena::At(std::size_t number) const
{
    const Slice& slice = slices.at(number);
    return {bytes.data() + slice.start, slice.length};
}

SnapshotRows::SnapshotRows(ComPtr<IMAPIFolder> source, std::shared_ptr<const TextDigester> sessionDigester)
    : folder(std::move(source)),
      digester(std::move(sessionDigester))
{
}

bool SnapshotRows::IsIndexed(const ColumnKey& key) noexcept
{
    return std::ranges::find(indexedColumns, key) != indexedColumns.end();
}

bool SnapshotRows::HasColumn(const ColumnKey& key) const
{
    return std::ranges::find(digestColumns, key, &DigestColumn::key) != digestColumns.end();
}

bool SnapshotRows::HasColumn(ULONG numberTag) const
{
    return std::ranges::find(numberColumns, numberTag, &NumberColumn::tag) != numberColumns.end();
}

void SnapshotRows::Load(std::span<const ColumnKey> digests, std::span<const ULONG> numbers)
{
    const std::size_t digestCount = digestColumns.size();
    const std::size_t numberCount = numberColumns.size();
    try
    {
        const std::vector<ULONG> tags = AddColumns(digests, numbers);
        if (!loaded || !tags.empty())
            ReadTable(tags);
        FinishLoad();
    }
    catch (...)
    {
        // A column that was only half read is as good as none.
        digestColumns.resize(digestCount);
        numberColumns.resize(numberCount);
        if (!loaded)
            entryIds = {};
        throw;
    }
}

// Adds the columns that are missing; returns the tags to ask the table for.
std::vector<ULONG> SnapshotRows::AddColumns(std::span<const ColumnKey> digests,
                                            std::span<const ULONG> numbers)
{
    std::vector<ULONG> tags;
    const auto addDigest = [&](const ColumnKey& key)
    {
        if (HasColumn(key))
            return;
        digestColumns.push_back({key, {}});
        if (!IsLong(key.tag))
            tags.push_back(key.tag);
    };
    if (!loaded)
        std::ranges::for_each(indexedColumns, addDigest);
    std::ranges::for_each(digests, addDigest);
    for (const ULONG tag : numbers)
        if (!HasColumn(tag))
        {
            numberColumns.push_back({tag, {}});
            tags.push_back(tag);
        }
    FitColumns();
    return tags;
}

void SnapshotRows::FitColumns()
{
    for (DigestColumn& column : digestColumns)
        column.values.resize(Count(), unknownDigest);
    for (NumberColumn& column : numberColumns)
        column.values.resize(Count(), unknownNumber);
}

void SnapshotRows::ReadTable(std::span<const ULONG> tags)
{
    std::vector<ULONG> columns{PR_ENTRYID};
    for (const ULONG tag : tags)
        if (std::ranges::find(columns, tag) == columns.end())
            columns.push_back(tag);
    const ComPtr<IMAPITable> table = OpenContents(folder.Get());
    ReadRows(table.Get(), columns, 1, [&](TableRow values) { TakeRow(values); });
}

void SnapshotRows::TakeRow(std::span<const SPropValue* const> values)
{
    // Without an entry id there is no message that anybody could open.
    const std::optional<std::uint32_t> row =
        values[0] ? PlaceOf(BytesOf(values[0]->Value.bin)) : std::nullopt;
    if (!row)
        return;
    for (const SPropValue* value : values.subspan(1))
        if (value)
            TakeValue(*row, *value);
}

// A new row on the first reading; later the row that has this entry id, if there is one.
std::optional<std::uint32_t> SnapshotRows::PlaceOf(std::span<const std::uint8_t> entryId)
{
    if (loaded)
        return RowOf(entryId);
    const std::size_t row = Count();
    entryIds.Resize(row + 1);
    entryIds.Set(row, entryId);
    FitColumns();
    return static_cast<std::uint32_t>(row);
}

void SnapshotRows::TakeValue(std::uint32_t row, const SPropValue& value)
{
    if (value.ulPropTag == tag::longTermEntryIdFromTable)
        longTermIds.Set(row, BytesOf(value.Value.bin));
    for (DigestColumn& column : digestColumns)
    {
        if (column.key.tag != value.ulPropTag || column.values[row] != unknownDigest)
            continue;
        if (IsWholeText(value))
            column.values[row] = DigestOfText(column.key, value.Value.lpszW);
        else if (IsBinaryTag(value.ulPropTag) && value.Value.bin.cb < tableBinaryLimit)
            column.values[row] = digester->OfBytes(BytesOf(value.Value.bin));
    }
    for (NumberColumn& column : numberColumns)
        if (column.tag == value.ulPropTag)
            column.values[row] = NumberOf(value).value_or(unknownNumber);
}

void SnapshotRows::FinishLoad()
{
    if (loaded)
        return;
    rowsById.resize(Count());
    std::iota(rowsById.begin(), rowsById.end(), 0u);
    std::ranges::sort(rowsById, [&](std::uint32_t left, std::uint32_t right)
                      { return std::ranges::lexicographical_compare(EntryId(left), EntryId(right)); });
    entryIds.Shrink();
    for (DigestColumn& column : digestColumns)
        column.values.shrink_to_fit();
    loaded = true;
}

bool SnapshotRows::WantsNotesOf(ULONG tag) const
{
    return tag == PR_BODY_W ||
           std::ranges::find(digestColumns, tag, [](const DigestColumn& column) { return column.key.tag; }) !=
               digestColumns.end();
}

std::optional<std::uint32_t> SnapshotRows::RowOf(std::span<const std::uint8_t> entryId)
{
    // Who reads a folder's messages asks for the same row again, or for one of the next.
    const std::size_t end = std::min<std::size_t>(lastAsked + nearRows, Count());
    for (std::size_t row = lastAsked; row < end; ++row)
        if (std::ranges::equal(EntryId(row), entryId))
            return lastAsked = static_cast<std::uint32_t>(row);
    const auto found = FindRow(entryId);
    lastAsked = found.value_or(lastAsked);
    return found;
}

std::optional<std::uint32_t> SnapshotRows::FindRow(std::span<const std::uint8_t> entryId) const
{
    const auto isBefore = [&](std::uint32_t row, std::span<const std::uint8_t> id)
    { return std::ranges::lexicographical_compare(EntryId(row), id); };
    const auto found = std::lower_bound(rowsById.begin(), rowsById.end(), entryId, isBefore);
    if (found == rowsById.end() || !std::ranges::equal(EntryId(*found), entryId))
        return std::nullopt;
    return *found;
}

std::span<const std::uint8_t> SnapshotRows::LongTermEntryId(std::size_t row)
{
    if (!hasLongTermIds)
    {
        longTermIds = {};
        longTermIds.Resize(Count());
        ReadTable({&tag::longTermEntryIdFromTable, 1});
        hasLongTermIds = true;
    }
    return longTermIds.At(row);
}

SnapshotRows::Column SnapshotRows::ColumnOf(const ColumnKey& key) const
{
    return static_cast<Column>(std::ranges::find(digestColumns, key, &DigestColumn::key) -
                               digestColumns.begin());
}

Digest SnapshotRows::DigestOfText(const ColumnKey& key, std::wstring_view text) const
{
    return key.ignoresCase ? digester->OfText(FoldCase(text)) : digester->OfText(text);
}

Digest SnapshotRows::DigestOf(const ColumnKey& key, const RestrictionValue& value) const
{
    if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&value))
        return digester->OfBytes(*bytes);
    return DigestOfText(key, *std::get<SharedText>(value));
}

Digest SnapshotRows::DigestAt(Column column, std::uint32_t row)
{
    if (digestColumns[column].values[row] == unknownDigest)
        digestColumns[column].values[row] = ReadDigest(digestColumns[column].key, row);
    return digestColumns[column].values[row];
}

Digest SnapshotRows::ReadDigest(const ColumnKey& key, std::uint32_t row)
{
    MessageValues values(OpenMessage(row));
    return OfOneMessage(
        [&]
        {
            if (!IsBinaryTag(key.tag))
                return DigestOfText(key, values.Text(key.tag));
            const auto bytes = values.Binary(key.tag);
            return bytes ? digester->OfBytes(*bytes) : missingDigest;
        });
}

std::optional<std::int64_t> SnapshotRows::NumberAt(ULONG tag, std::uint32_t row)
{
    std::int64_t& number = std::ranges::find(numberColumns, tag, &NumberColumn::tag)->values[row];
    if (number == unknownNumber)
    {
        MessageValues values(OpenMessage(row));
        number = OfOneMessage([&] { return values.Number(tag); }).value_or(missingNumber);
    }
    return number == missingNumber ? std::nullopt : std::optional(number);
}

bool SnapshotRows::SomeSubObjectHas(ULONG table, const ColumnKey& column, Digest digest, std::uint32_t row)
{
    const SubObjectKey key{table, column};
    auto& known = subObjects[key];
    auto found = known.find(row);
    if (found == known.end())
        found = known.emplace(row, ReadSubObjects(key, row)).first;
    return std::ranges::find(found->second, digest) != found->second.end();
}

std::vector<Digest> SnapshotRows::ReadSubObjects(const SubObjectKey& key, std::uint32_t row)
{
    const ComPtr<IMessage> message = OpenMessage(row);
    std::vector<Digest> digests;
    OfOneMessage(
        [&]
        {
            return AnySubObject(message.Get(), key.table, {&key.column.tag, 1},
                                [&](RowValues& values)
                                {
                                    digests.push_back(DigestOfText(key.column, values.Text(key.column.tag)));
                                    return false;
                                });
        });
    return digests;
}

void SnapshotRows::NoteText(std::uint32_t row, ULONG tag, std::wstring_view text)
{
    // Every search asks for the body; other texts are of use to searches that have asked for them before.
    const ColumnKey body{PR_BODY_W, false};
    if (tag == body.tag && !HasColumn(body))
        Load({&body, 1});
    for (DigestColumn& column : digestColumns)
        if (column.key.tag == tag && column.values[row] == unknownDigest)
            column.values[row] = DigestOfText(column.key, text);
}

ComPtr<IMessage> SnapshotRows::OpenMessage(std::uint32_t row)
{
    if (openMessage && openRow == row)
        return openMessage;
    openMessage.Reset();
    const EntryIdBytes id(EntryId(row).begin(), EntryId(row).end());
    ULONG type = 0;
    ComPtr<IMessage> message;
    OfOneMessage(
        [&]
        {
            CheckMapi(folder->OpenEntry(static_cast<ULONG>(id.size()), AsEntryId(id), &IID_IMessage, 0, &type,
                                        reinterpret_cast<IUnknown**>(message.GetAddressOf())),
                      folder.Get(), L"open a message");
        });
    openMessage = std::move(message);
    openRow = row;
    return openMessage;
}
