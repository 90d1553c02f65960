#pragma once

#include "localmapi/storage/StoredValue.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

// The rows behind one IMAPITable, read in batches. Rows are known by ids that stay theirs for as long as the
// source lives. A source is used by one thread at a time: the table above it sees to that.
// Every call may throw; what it throws reaches the table's caller as an HRESULT.
class TableSource
{
public:
    virtual ~TableSource() = default;

    // The tags of the columns a table shows before SetColumns, also the ones QueryColumns answers.
    virtual std::vector<std::uint32_t> DefaultColumns() const = 0;

    // A snapshot of the rows there are, in the table's own order.
    virtual std::vector<std::int64_t> ReadRowIds() = 0;

    // How many rows there are; without reading them, where the source can.
    virtual std::size_t CountRows() { return ReadRowIds().size(); }

    // values[row * tags.size() + column]; a row that is gone by now yields monostate everywhere.
    virtual std::vector<StoredValue> ReadRows(std::span<const std::int64_t> rowIds,
                                              std::span<const std::uint32_t> tags) = 0;

    // The table of a row's sub-objects (PR_MESSAGE_RECIPIENTS, PR_MESSAGE_ATTACHMENTS), for restrictions on
    // them; null when a row has none of that kind.
    virtual std::unique_ptr<TableSource> OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag) = 0;
};
