#pragma once

#include "quorvex/SnapshotRows.h"
#include "quorvex/TextDigest.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

// A column that has to have a certain value. The value, which is not copied, is digested when it is first
// needed: bodies are long, and mostly the subject and the sender tell that there is no such row.
class KeyCondition
{
public:
    KeyCondition(const SnapshotRows& rows, const ColumnKey& key, const RestrictionValue& value)
        : column(rows.ColumnOf(key)),
          snapshot(&rows),
          columnKey(key),
          wanted(&value)
    {
    }

    Digest GetDigest() const
    {
        if (!digest)
            digest = snapshot->DigestOf(columnKey, *wanted);
        return *digest;
    }

    SnapshotRows::Column column;

private:
    const SnapshotRows* snapshot;
    ColumnKey columnKey;
    const RestrictionValue* wanted;
    mutable std::optional<Digest> digest;
};

// Finds the few rows that may meet a set of key conditions without looking at the others.
//
// The first level sorts all rows by the columns that tables give (subject, sender). Where many rows share
// those, a second level sorts these rows by the other columns, bodies for one, for which each message is
// opened once at most. The rows given have all the right digests or cannot be told from such; the caller
// checks them.
//
// For one thread at a time, with the rows it was made for.
class RowIndex
{
public:
    explicit RowIndex(SnapshotRows& rows) : rows(rows) {}

    // Ascending. Conditions' columns are loaded. Throws what reading messages throws.
    std::vector<std::uint32_t> Candidates(std::span<const KeyCondition> conditions);

private:
    using ColumnSet = std::uint64_t;    // by bit; columns beyond its width are left to the caller's check

    struct LevelKey
    {
        ColumnSet outerColumns;    // what the rows of this level share,
        std::uint64_t outerKey;    // and the key of it
        ColumnSet columns;         // what they are sorted by

        auto operator<=>(const LevelKey&) const = default;
    };

    struct Level
    {
        std::vector<std::uint64_t> keys;          // ascending
        std::vector<std::uint32_t> sorted;        // the keys' rows; those of one key by number
        std::vector<std::uint32_t> unreadable;    // rows whose key cannot be had
    };

    static bool Fits(SnapshotRows::Column column) noexcept { return column < 64; }
    static ColumnSet SetOf(std::span<const KeyCondition> conditions);
    static std::uint64_t KeyOf(std::span<const KeyCondition> conditions, ColumnSet columns);
    std::uint64_t KeyOf(std::uint32_t row, ColumnSet columns);
    std::optional<std::uint64_t> TryKeyOf(std::uint32_t row, ColumnSet columns);

    ColumnSet IndexedColumns(ColumnSet columns) const;
    const Level& FirstLevel(ColumnSet columns);
    const Level& SecondLevel(const LevelKey& key, std::span<const std::uint32_t> bucket);
    Level Sort(std::span<const std::uint32_t> candidates, ColumnSet columns);
    static std::span<const std::uint32_t> Bucket(const Level& level, std::uint64_t key);

    SnapshotRows& rows;
    std::map<LevelKey, Level> levels;
};
