#include "localmapi/VectorTableSource.h"

#include <numeric>
#include <utility>

VectorTableSource::VectorTableSource(std::vector<std::uint32_t> columns, std::vector<Row> rows)
    : columns(std::move(columns)),
      rows(std::move(rows))
{
}

std::vector<std::uint32_t> VectorTableSource::DefaultColumns() const
{
    return columns;
}

std::vector<std::int64_t> VectorTableSource::ReadRowIds()
{
    std::vector<std::int64_t> ids(rows.size());
    std::iota(ids.begin(), ids.end(), 0);
    return ids;
}

std::size_t VectorTableSource::CountRows()
{
    return rows.size();
}

std::vector<StoredValue> VectorTableSource::ReadRows(std::span<const std::int64_t> rowIds,
                                                     std::span<const std::uint32_t> tags)
{
    std::vector<StoredValue> values;
    values.reserve(rowIds.size() * tags.size());
    for (const std::int64_t id : rowIds)
    {
        const Row& row = rows.at(static_cast<std::size_t>(id));
        for (const std::uint32_t tag : tags)
        {
            const auto found = row.find(tag);
            values.push_back(found == row.end() ? StoredValue() : found->second);
        }
    }
    return values;
}

std::unique_ptr<TableSource> VectorTableSource::OpenSubTable(std::int64_t, std::uint32_t)
{
    return nullptr;
}
