#pragma once

#include "localmapi/StoreContext.h"
#include "localmapi/TableSource.h"

// The contents table of one folder: its messages in the order in which they came into the store.
class MessageTableSource : public TableSource
{
public:
    MessageTableSource(SharedStore store, std::int64_t folderId);

    std::vector<std::uint32_t> DefaultColumns() const override;
    std::vector<std::int64_t> ReadRowIds() override;
    std::size_t CountRows() override;
    std::vector<StoredValue> ReadRows(std::span<const std::int64_t> rowIds,
                                      std::span<const std::uint32_t> tags) override;
    std::unique_ptr<TableSource> OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag) override;

private:
    SharedStore store;
    std::int64_t folderId;
};
