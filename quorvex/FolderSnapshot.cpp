#include "quorvex/FolderSnapshot.h"

#include "quorvex/MapiError.h"
#include "quorvex/MessageGone.h"
#include "quorvex/MessageValues.h"
#include "quorvex/RestrictionEvaluator.h"

#include <mapicode.h>

#include <algorithm>
#include <span>
#include <utility>

namespace
{
using Microsoft::WRL::ComPtr;

// The columns that holding a restriction against a row will ask for. Conditions on sub-objects ask for none.
class ColumnsWanted
{
public:
    explicit ColumnsWanted(const Restriction& restriction)
    {
        digests.reserve(restriction.children.size());
        Add(restriction);
    }

    std::vector<ColumnKey> digests;
    std::vector<ULONG> numbers;

private:
    void Add(const Restriction& restriction)
    {
        if (restriction.kind == RES_SUBRESTRICTION)
            return;
        if (const auto column = EqualityColumn(restriction))
            digests.push_back(*column);
        else if (restriction.kind == RES_PROPERTY && IsNumberTag(restriction.tag))
            numbers.push_back(restriction.tag);
        for (const Restriction& child : restriction.children)
            Add(child);
    }
};

// One row of the snapshot: equality and numbers from what is kept, anything else from the message.
class SnapshotRowValues : public RowValues
{
    template <class Read>
    auto FromMessage(Read&& read)
    {
        MessageValues message(rows.OpenMessage(row));
        return OfOneMessage([&] { return read(message); });
    }

public:
    SnapshotRowValues(SnapshotRows& snapshotRows, std::uint32_t rowNumber)
        : rows(snapshotRows),
          row(rowNumber)
    {
    }

    std::optional<std::int64_t> Number(ULONG tag) override { return rows.NumberAt(tag, row); }

    std::wstring Text(ULONG tag) override
    {
        return FromMessage([&](RowValues& message) { return message.Text(tag); });
    }
    std::optional<std::vector<std::uint8_t>> Binary(ULONG tag) override
    {
        return FromMessage([&](RowValues& message) { return message.Binary(tag); });
    }
    bool Exists(ULONG tag) override
    {
        return FromMessage([&](RowValues& message) { return message.Exists(tag); });
    }

    bool SomeSubObjectMeets(ULONG table, const Restriction& condition) override
    {
        if (const auto column = EqualityColumn(condition); column && IsTextTag(column->tag))
            return rows.SomeSubObjectHas(table, *column, rows.DigestOf(*column, condition.value), row);
        return FromMessage([&](RowValues& message) { return message.SomeSubObjectMeets(table, condition); });
    }

    bool Equals(const ColumnKey& column, const RestrictionValue& value) override
    {
        return rows.DigestAt(rows.ColumnOf(column), row) == rows.DigestOf(column, value);
    }

private:
    SnapshotRows& rows;
    std::uint32_t row;
};

// The conditions that all have to be met: a restriction's own ones when it is an AND, else itself.
void CollectConjuncts(const Restriction& restriction, std::vector<const Restriction*>& conjuncts)
{
    if (restriction.kind != RES_AND)
        conjuncts.push_back(&restriction);
    else
        for (const Restriction& child : restriction.children)
            CollectConjuncts(child, conjuncts);
}

// A restriction taken apart: what the index can look up, and the conditions to check one by one on what it
// gives.
struct SearchPlan
{
    std::vector<KeyCondition> keys;
    std::vector<const Restriction*> rest;

    SearchPlan(const Restriction& restriction, const SnapshotRows& rows)
    {
        rest.reserve(restriction.children.size());
        CollectConjuncts(restriction, rest);
        keys.reserve(rest.size());
        std::erase_if(rest,
                      [&](const Restriction* condition)
                      {
                          const auto column = EqualityColumn(*condition);
                          if (column)
                              keys.emplace_back(rows, *column, condition->value);
                          return column.has_value();
                      });
        // What the table has given is checked before what a message may have to be opened for.
        std::ranges::sort(keys, {}, &KeyCondition::column);
        std::ranges::stable_partition(rest, [](const Restriction* condition)
                                      { return IsNumberTag(condition->tag); });
    }

    bool IsMetBy(SnapshotRows& rows, std::uint32_t row) const
    {
        try
        {
            SnapshotRowValues values(rows, row);
            return std::ranges::all_of(keys, [&](const KeyCondition& key)
                                       { return rows.DigestAt(key.column, row) == key.GetDigest(); }) &&
                   std::ranges::all_of(rest, [&](const Restriction* condition)
                                       { return Meets(*condition, values); });
        }
        catch (const MessageGone&)
        {
            return false;    // a message that nobody can open is no duplicate of anything
        }
    }
};

// Lets a message stay open no longer than the search that needed it.
class MessageCloser
{
public:
    explicit MessageCloser(SnapshotRows& snapshotRows) : rows(snapshotRows) {}
    ~MessageCloser() { rows.CloseMessage(); }
    MessageCloser(const MessageCloser&) = delete;
    MessageCloser& operator=(const MessageCloser&) = delete;

private:
    SnapshotRows& rows;
};
}    // namespace

FolderSnapshot::FolderSnapshot(ComPtr<IMAPIFolder> folder, std::shared_ptr<const TextDigester> digester)
    : rows(std::move(folder), std::move(digester)),
      index(rows)
{
}

std::size_t FolderSnapshot::Count()
{
    const std::lock_guard lock(mutex);
    rows.Load();
    return rows.Count();
}

EntryIdBytes FolderSnapshot::EntryId(std::size_t row)
{
    const std::lock_guard lock(mutex);
    const auto id = rows.EntryId(CheckedRow(row));
    return {id.begin(), id.end()};
}

EntryIdBytes FolderSnapshot::LongTermEntryId(std::size_t row)
{
    const std::lock_guard lock(mutex);
    const auto id = rows.LongTermEntryId(CheckedRow(row));
    return {id.begin(), id.end()};
}

ComPtr<IMessage> FolderSnapshot::OpenMessage(std::size_t row)
{
    const std::lock_guard lock(mutex);
    const MessageCloser closer(rows);
    return rows.OpenMessage(CheckedRow(row));
}

bool FolderSnapshot::NoteText(const EntryIdBytes& entryId, ULONG tag, std::wstring_view text)
{
    const std::lock_guard lock(mutex);
    const auto row = rows.IsLoaded() ? rows.RowOf(entryId) : std::nullopt;
    if (row && rows.WantsNotesOf(tag))
        rows.NoteText(*row, tag, text);
    return row.has_value();
}

bool FolderSnapshot::IsLoaded() const
{
    const std::lock_guard lock(mutex);
    return rows.IsLoaded();
}

std::vector<std::uint32_t> FolderSnapshot::Search(const Restriction& restriction)
{
    const std::lock_guard lock(mutex);
    const MessageCloser closer(rows);
    const ColumnsWanted wanted(restriction);
    rows.Load(wanted.digests, wanted.numbers);

    const SearchPlan plan(restriction, rows);
    std::vector<std::uint32_t> found = index.Candidates(plan.keys);
    std::erase_if(found, [&](std::uint32_t row) { return !plan.IsMetBy(rows, row); });
    return found;
}

std::uint32_t FolderSnapshot::CheckedRow(std::size_t row)
{
    rows.Load();
    if (row >= rows.Count())
        throw MapiError(E_INVALIDARG, L"The folder has no message of that number.");
    return static_cast<std::uint32_t>(row);
}
