#include "quorvex/RowIndex.h"

#include "quorvex/MessageGone.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

namespace
{
// Up to so many rows are sooner checked one by one than sorted.
constexpr std::size_t smallBucket = 8;

std::uint64_t Mix(std::uint64_t key, const Digest& digest)
{
    return (std::rotl(key, 23) ^ digest.low) * 0x9E3779B97F4A7C15;    // any odd multiplier spreads the bits
}

template <class Visit>
void ForEachColumn(std::uint64_t columns, Visit&& visit)
{
    for (; columns != 0; columns &= columns - 1)
        visit(static_cast<SnapshotRows::Column>(std::countr_zero(columns)));
}
}    // namespace

RowIndex::ColumnSet RowIndex::SetOf(std::span<const KeyCondition> conditions)
{
    ColumnSet columns = 0;
    for (const KeyCondition& condition : conditions)
        if (Fits(condition.column))
            columns |= ColumnSet{1} << condition.column;
    return columns;
}

std::uint64_t RowIndex::KeyOf(std::span<const KeyCondition> conditions, ColumnSet columns)
{
    std::uint64_t key = 0;
    ForEachColumn(
        columns, [&](SnapshotRows::Column column)
        { key = Mix(key, std::ranges::find(conditions, column, &KeyCondition::column)->GetDigest()); });
    return key;
}

std::uint64_t RowIndex::KeyOf(std::uint32_t row, ColumnSet columns)
{
    std::uint64_t key = 0;
    ForEachColumn(columns, [&](SnapshotRows::Column column) { key = Mix(key, rows.DigestAt(column, row)); });
    return key;
}

std::optional<std::uint64_t> RowIndex::TryKeyOf(std::uint32_t row, ColumnSet columns)
{
    try
    {
        return KeyOf(row, columns);
    }
    catch (const MessageGone&)
    {
        return std::nullopt;    // may be readable again when the row is checked
    }
}

RowIndex::ColumnSet RowIndex::IndexedColumns(ColumnSet columns) const
{
    ColumnSet indexed = 0;
    ForEachColumn(columns,
                  [&](SnapshotRows::Column column)
                  {
                      if (rows.IsIndexed(column))
                          indexed |= ColumnSet{1} << column;
                  });
    return indexed;
}

RowIndex::Level RowIndex::Sort(std::span<const std::uint32_t> candidates, ColumnSet columns)
{
    Level level;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> keyed;
    keyed.reserve(candidates.size());
    for (const std::uint32_t row : candidates)
        if (const auto key = TryKeyOf(row, columns))
            keyed.emplace_back(*key, row);
        else
            level.unreadable.push_back(row);
    std::ranges::sort(keyed);
    level.keys.reserve(keyed.size());
    level.sorted.reserve(keyed.size());
    for (const auto& [key, row] : keyed)
    {
        level.keys.push_back(key);
        level.sorted.push_back(row);
    }
    return level;
}

std::span<const std::uint32_t> RowIndex::Bucket(const Level& level, std::uint64_t key)
{
    const auto bucket = std::ranges::equal_range(level.keys, key);
    return std::span(level.sorted)
        .subspan(static_cast<std::size_t>(bucket.begin() - level.keys.begin()), bucket.size());
}

const RowIndex::Level& RowIndex::FirstLevel(ColumnSet columns)
{
    const LevelKey key{0, 0, columns};
    if (const auto known = levels.find(key); known != levels.end())
        return known->second;
    std::vector<std::uint32_t> all(rows.Count());
    std::iota(all.begin(), all.end(), 0u);
    return levels.emplace(key, Sort(all, columns)).first->second;
}

const RowIndex::Level& RowIndex::SecondLevel(const LevelKey& key, std::span<const std::uint32_t> bucket)
{
    if (const auto known = levels.find(key); known != levels.end())
        return known->second;
    return levels.emplace(key, Sort(bucket, key.columns)).first->second;
}

std::vector<std::uint32_t> RowIndex::Candidates(std::span<const KeyCondition> conditions)
{
    const ColumnSet wanted = SetOf(conditions);
    const ColumnSet outer = IndexedColumns(wanted);
    const ColumnSet inner = wanted & ~outer;

    const Level& first = FirstLevel(outer);
    const std::uint64_t outerKey = KeyOf(conditions, outer);
    std::span<const std::uint32_t> bucket = Bucket(first, outerKey);
    std::vector<std::uint32_t> found = first.unreadable;
    if (inner != 0 && bucket.size() > smallBucket)
    {
        const Level& second = SecondLevel({outer, outerKey, inner}, bucket);
        bucket = Bucket(second, KeyOf(conditions, inner));
        found.insert(found.end(), second.unreadable.begin(), second.unreadable.end());
    }
    found.insert(found.end(), bucket.begin(), bucket.end());
    std::ranges::sort(found);
    return found;
}
