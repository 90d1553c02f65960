#include "localmapi/TableRows.h"

#include "localmapi/ComBoundary.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/ValueComparison.h"

#include <mapicode.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace
{
constexpr std::size_t findBatchSize = 512;
constexpr std::size_t sortBatchSize = 4096;

LONG MovedBy(std::size_t from, std::size_t to)
{
    return static_cast<LONG>(static_cast<std::int64_t>(to) - static_cast<std::int64_t>(from));
}

std::vector<std::uint32_t> TagsOf(const std::vector<SSortOrder>& order)
{
    std::vector<std::uint32_t> tags;
    for (const SSortOrder& key : order)
        tags.push_back(StoredTag(key.ulPropTag));
    return tags;
}

// Whether the row whose keys start at `left` comes before the one whose keys start at `right`.
bool ComesBefore(const std::vector<SSortOrder>& order, const StoredValue* left, const StoredValue* right)
{
    for (std::size_t key = 0; key < order.size(); ++key)
    {
        const std::weak_ordering result = CompareForSort(left[key], right[key]);
        if (result != 0)
            return order[key].ulOrder == TABLE_SORT_DESCEND ? result > 0 : result < 0;
    }
    return false;
}
}    // namespace

TableRows::TableRows(std::unique_ptr<TableSource> source) : source(std::move(source)) {}

std::size_t TableRows::Count()
{
    return rows || restriction ? Rows().size() : source->CountRows();
}

LONG TableRows::Seek(BOOKMARK origin, LONG rowCount)
{
    const std::size_t start = PositionOf(origin);
    const std::int64_t target = static_cast<std::int64_t>(start) + rowCount;
    position = static_cast<std::size_t>(
        std::clamp<std::int64_t>(target, 0, static_cast<std::int64_t>(Rows().size())));
    return MovedBy(start, position);
}

void TableRows::SeekFraction(ULONG numerator, ULONG denominator)
{
    if (denominator == 0)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    const std::uint64_t count = Rows().size();
    position = numerator >= denominator ? count : static_cast<std::size_t>(count * numerator / denominator);
}

std::vector<std::int64_t> TableRows::Take(LONG rowCount, bool stay)
{
    const std::size_t before = position;
    const LONG moved = Seek(BOOKMARK_CURRENT, rowCount);
    const std::size_t first = std::min(before, position);
    const auto begin = Rows().begin() + static_cast<std::ptrdiff_t>(first);
    const std::vector<std::int64_t> taken(begin, begin + std::abs(static_cast<std::int64_t>(moved)));
    if (stay)
        position = before;
    return taken;
}

void TableRows::Find(const Restriction& sought, BOOKMARK origin, bool backward)
{
    const std::span<const std::int64_t> all(Rows());
    const std::size_t start = PositionOf(origin);
    // Backward, the rows are tested up to and with the one at the origin, the nearest first.
    std::size_t end = std::min(start + 1, all.size());
    std::size_t begin = start;
    while (backward ? end > 0 : begin < all.size())
    {
        if (backward)
            begin = end - std::min(end, findBatchSize);
        else
            end = std::min(begin + findBatchSize, all.size());
        const auto batch = all.subspan(begin, end - begin);
        const std::vector<std::int64_t> found = sought.Filter(*source, batch);
        if (!found.empty())
        {
            const std::int64_t row = backward ? found.back() : found.front();
            position =
                begin + static_cast<std::size_t>(std::find(batch.begin(), batch.end(), row) - batch.begin());
            return;
        }
        (backward ? end : begin) = backward ? begin : end;
    }
    throw MapiError(MAPI_E_NOT_FOUND);
}

void TableRows::Restrict(std::optional<Restriction> newRestriction)
{
    restriction = std::move(newRestriction);
    StartOver();
}

void TableRows::Sort(std::vector<SSortOrder> newOrder)
{
    order = std::move(newOrder);
    StartOver();
}

BOOKMARK TableRows::CreateBookmark()
{
    if (nextBookmark == std::numeric_limits<BOOKMARK>::max())
        throw MapiError(MAPI_E_UNABLE_TO_COMPLETE);
    bookmarks.emplace(nextBookmark, position);
    return nextBookmark++;
}

void TableRows::FreeBookmark(BOOKMARK bookmark)
{
    // The three that every table has stay.
    if (bookmark > BOOKMARK_END && bookmarks.erase(bookmark) == 0)
        throw MapiError(MAPI_E_INVALID_BOOKMARK);
}

const std::vector<std::int64_t>& TableRows::Rows()
{
    if (!rows)
    {
        std::vector<std::int64_t> ids = source->ReadRowIds();
        if (restriction)
            ids = restriction->Filter(*source, ids);
        if (!order.empty())
            SortRows(ids);
        rows = std::move(ids);
    }
    return *rows;
}

void TableRows::SortRows(std::vector<std::int64_t>& ids)
{
    const std::vector<std::uint32_t> tags = TagsOf(order);
    std::vector<StoredValue> keys;
    keys.reserve(ids.size() * tags.size());
    for (std::size_t start = 0; start < ids.size(); start += sortBatchSize)
    {
        const auto batch = std::span(ids).subspan(start, std::min(sortBatchSize, ids.size() - start));
        std::ranges::move(source->ReadRows(batch, tags), std::back_inserter(keys));
    }
    std::vector<std::size_t> places(ids.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::stable_sort(
        places, [&](std::size_t left, std::size_t right)
        { return ComesBefore(order, &keys[left * tags.size()], &keys[right * tags.size()]); });
    std::vector<std::int64_t> sorted(ids.size());
    std::ranges::transform(places, sorted.begin(), [&](std::size_t place) { return ids[place]; });
    ids = std::move(sorted);
}

std::size_t TableRows::PositionOf(BOOKMARK bookmark)
{
    if (bookmark == BOOKMARK_BEGINNING)
        return 0;
    if (bookmark == BOOKMARK_CURRENT)
        return position;
    if (bookmark == BOOKMARK_END)
        return Rows().size();
    const auto found = bookmarks.find(bookmark);
    if (found == bookmarks.end())
        throw MapiError(MAPI_E_INVALID_BOOKMARK);
    return found->second;
}

void TableRows::StartOver()
{
    rows.reset();
    bookmarks.clear();
    position = 0;
}
