#include "localmapi/MessageTableSource.h"

#include "localmapi/StoreValues.h"
#include "localmapi/SubObjectTables.h"
#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/Messages.h"

#include <utility>

MessageTableSource::MessageTableSource(SharedStore store, std::int64_t folderId)
    : store(std::move(store)),
      folderId(folderId)
{
}

std::vector<std::uint32_t> MessageTableSource::DefaultColumns() const
{
    std::vector<std::uint32_t> tags = MessagePlaceTags();
    if (store->hasShortTermIds)
        tags.push_back(tag::longTermEntryIdFromTable);
    for (const MessageColumn& column : MessageColumns())
    {
        // Long texts are read only for who asks for them.
        const bool internal = column.tag == tag::storedMessageId || column.tag == tag::storedFolderId;
        if (!internal && !IsMessageText(column.tag))
            tags.push_back(column.tag);
    }
    return tags;
}

std::vector<std::int64_t> MessageTableSource::ReadRowIds()
{
    return ReadMessageIds(*store->file, folderId);
}

std::size_t MessageTableSource::CountRows()
{
    return CountMessages(*store->file, folderId);
}

std::vector<StoredValue> MessageTableSource::ReadRows(std::span<const std::int64_t> rowIds,
                                                      std::span<const std::uint32_t> tags)
{
    return ReadContentsValues(*store, folderId, rowIds, tags);
}

std::unique_ptr<TableSource> MessageTableSource::OpenSubTable(std::int64_t rowId, std::uint32_t subObjectTag)
{
    if (subObjectTag == tag::messageRecipients)
        return MakeRecipientTableSource(ReadRecipients(*store->file, rowId));
    if (subObjectTag == tag::messageAttachments)
        return MakeAttachmentTableSource(ReadAttachments(*store->file, rowId));
    return nullptr;
}
