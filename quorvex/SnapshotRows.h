#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/MessageValues.h"
#include "quorvex/Restriction.h"
#include "quorvex/TextDigest.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

// Many short byte strings in one block, by number.
class ByteArena
{
public:
    void Resize(std::size_t count) { slices.resize(count); }
    void Set(std::size_t number, std::span<const std::uint8_t> bytes);
    std::span<const std::uint8_t> At(std::size_t number) const;
    std::size_t Count() const noexcept { return slices.size(); }
    void Shrink();    // gives back memory kept for more

private:
    struct Slice
    {
        std::uint32_t start = 0;
        std::uint32_t length = 0;
    };

    std::vector<std::uint8_t> bytes;
    std::vector<Slice> slices;
};

// The messages of a folder, in the order of its contents table: entry ids, and of each value that a search
// asks for no more than a digest or a number. Values come from the table, in one pass for all columns that
// are missing; what the table does not give whole is read from the message, once, when it is asked for.
//
// For one thread at a time. Throws MapiError when the folder fails, MessageGone when one message cannot be
// read.
class SnapshotRows
{
public:
    using Column = std::uint32_t;

    SnapshotRows(Microsoft::WRL::ComPtr<IMAPIFolder> folder, std::shared_ptr<const TextDigester> digester);

    // Reads the table unless that was done, and what it has of the given columns.
    void Load(std::span<const ColumnKey> digests = {}, std::span<const ULONG> numbers = {});
    bool IsLoaded() const noexcept { return loaded; }

    // What follows needs Load to have been called, for the columns asked for.

    std::size_t Count() const noexcept { return entryIds.Count(); }
    std::span<const std::uint8_t> EntryId(std::size_t row) const { return entryIds.At(row); }
    std::optional<std::uint32_t> RowOf(std::span<const std::uint8_t> entryId);

    // The long-term id that the table has for the row; empty when it has none. Read on first use.
    std::span<const std::uint8_t> LongTermEntryId(std::size_t row);

    Column ColumnOf(const ColumnKey& key) const;
    static bool IsIndexed(
        const ColumnKey& key) noexcept;    // of the columns that every snapshot has from the start
    bool IsIndexed(Column column) const { return IsIndexed(digestColumns[column].key); }

    Digest DigestAt(Column column, std::uint32_t row);
    Digest DigestOf(const ColumnKey& key, const RestrictionValue& value) const;
    std::optional<std::int64_t> NumberAt(ULONG tag, std::uint32_t row);

    // Whether the column of some row of the message's sub-object table has that digest.
    bool SomeSubObjectHas(ULONG table, const ColumnKey& column, Digest digest, std::uint32_t row);

    // Whether it is of any use to note what such a text of a message reads.
    bool WantsNotesOf(ULONG tag) const;

    // Remembers what a text of the message reads.
    void NoteText(std::uint32_t row, ULONG tag, std::wstring_view text);

    // The message, opened for reading. The last one stays open until another is asked for or CloseMessage is
    // called.
    Microsoft::WRL::ComPtr<IMessage> OpenMessage(std::uint32_t row);
    void CloseMessage() noexcept { openMessage.Reset(); }

private:
    struct DigestColumn
    {
        ColumnKey key;
        std::vector<Digest> values;
    };
    struct NumberColumn
    {
        ULONG tag;
        std::vector<std::int64_t> values;
    };
    struct SubObjectKey
    {
        ULONG table;
        ColumnKey column;

        auto operator<=>(const SubObjectKey&) const = default;
    };

    bool HasColumn(const ColumnKey& key) const;
    bool HasColumn(ULONG numberTag) const;
    std::vector<ULONG> AddColumns(std::span<const ColumnKey> digests, std::span<const ULONG> numbers);
    void ReadTable(std::span<const ULONG> tags);
    void TakeRow(std::span<const SPropValue* const> values);
    std::optional<std::uint32_t> PlaceOf(std::span<const std::uint8_t> entryId);
    void TakeValue(std::uint32_t row, const SPropValue& value);
    void FitColumns();
    void FinishLoad();
    std::optional<std::uint32_t> FindRow(std::span<const std::uint8_t> entryId) const;
    Digest DigestOfText(const ColumnKey& key, std::wstring_view text) const;
    Digest ReadDigest(const ColumnKey& key, std::uint32_t row);
    std::vector<Digest> ReadSubObjects(const SubObjectKey& key, std::uint32_t row);

    Microsoft::WRL::ComPtr<IMAPIFolder> folder;
    std::shared_ptr<const TextDigester> digester;
    bool loaded = false;
    bool hasLongTermIds = false;
    ByteArena entryIds;
    ByteArena longTermIds;
    std::vector<std::uint32_t> rowsById;    // ordered by entry id
    std::uint32_t lastAsked = 0;            // by entry id
    std::vector<DigestColumn> digestColumns;
    std::vector<NumberColumn> numberColumns;
    std::map<SubObjectKey, std::unordered_map<std::uint32_t, std::vector<Digest>>> subObjects;

    Microsoft::WRL::ComPtr<IMessage> openMessage;
    std::uint32_t openRow = 0;
};
