#pragma once

#include "localmapi/TableSource.h"

#include <map>

// A table of a few rows that stand in memory, such as the session's list of stores.
class VectorTableSource : public TableSource
{
public:
    using Row = std::map<std::uint32_t, StoredValue>;    // by tag, texts by their Unicode one

    VectorTableSource(std::vector<std::uint32_t> columns, std::vector<Row> rows);

    std::vector<std::uint32_t> DefaultColumns() const override;
    std::vector<std::int64_t> ReadRowIds() override;
    std::size_t CountRows() override;
    std::vector<StoredValue> ReadRows(std::span<const std::int64_t> rowIds,
                                      std::span<const std::uint32_t> tags) override;
    std::unique_ptr<TableSource> OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag) override;

private:
    std::vector<std::uint32_t> columns;
    std::vector<Row> rows;    // a row's id is its index
};
