#include "localmapi/FolderTableSource.h"

#include "localmapi/StoreValues.h"
#include "localmapi/storage/Folders.h"

#include <utility>

FolderTableSource::FolderTableSource(SharedStore store, std::int64_t folderId, bool deep)
    : store(std::move(store)),
      folderId(folderId),
      deep(deep)
{
}

std::vector<std::uint32_t> FolderTableSource::DefaultColumns() const
{
    std::vector<std::uint32_t> tags = FolderValueTags(0);
    tags.push_back(tag::depth);
    return tags;
}

std::vector<std::int64_t> FolderTableSource::ReadRowIds()
{
    depths.clear();
    std::vector<std::int64_t> ids;
    for (const FolderPlace& place : ListFolders(*store->file, folderId, deep))
    {
        ids.push_back(place.id);
        depths[place.id] = place.depth;
    }
    return ids;
}

std::vector<StoredValue> FolderTableSource::ReadRows(std::span<const std::int64_t> rowIds,
                                                     std::span<const std::uint32_t> tags)
{
    // A depth belongs to the table, not to the folder; the folder's number is read to know whether it is
    // there.
    std::vector<std::uint32_t> read;
    for (const std::uint32_t tag : tags)
        read.push_back(tag == tag::depth ? tag::storedFolderId : tag);

    std::vector<StoredValue> values = ReadFolderValues(*store, rowIds, read);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        if (tags[i % tags.size()] == tag::depth && !std::holds_alternative<std::monostate>(values[i]))
            values[i] = depths[rowIds[i / tags.size()]];
    }
    return values;
}

std::unique_ptr<TableSource> FolderTableSource::OpenSubTable(std::int64_t, std::uint32_t)
{
    return nullptr;
}
