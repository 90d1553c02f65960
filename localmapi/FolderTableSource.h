#pragma once

#include "localmapi/StoreContext.h"
#include "localmapi/TableSource.h"

#include <map>

// The hierarchy table of one folder: its sub-folders or, with `deep`, all folders below it.
class FolderTableSource : public TableSource
{
public:
    FolderTableSource(SharedStore store, std::int64_t folderId, bool deep);

    std::vector<std::uint32_t> DefaultColumns() const override;
    std::vector<std::int64_t> ReadRowIds() override;
    std::vector<StoredValue> ReadRows(std::span<const std::int64_t> rowIds,
                                      std::span<const std::uint32_t> tags) override;
    std::unique_ptr<TableSource> OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag) override;

private:
    SharedStore store;
    std::int64_t folderId;
    bool deep;
    std::map<std::int64_t, std::int64_t> depths;    // of the rows read last
};
