#pragma once

#include "localmapi/storage/StoreFile.h"

#include <cstddef>
#include <map>
#include <span>
#include <vector>

// Reading messages. Tags are in the stored form (tag::Stored); every call is one statement.

// The messages of a folder in the order of its contents table.
std::vector<std::int64_t> ReadMessageIds(StoreFile& file, std::int64_t folderId);
std::size_t CountMessages(StoreFile& file, std::int64_t folderId);

// values[row * tags.size() + column]; monostate everywhere for a message that is not in the folder any more.
std::vector<StoredValue> ReadMessageRows(StoreFile& file, std::int64_t folderId,
                                         std::span<const std::int64_t> ids,
                                         std::span<const std::uint32_t> tags);

// The values of one message, in the order of `tags`. Throws StoreError NoSuchMessage.
std::vector<StoredValue> ReadMessage(StoreFile& file, std::int64_t id, std::span<const std::uint32_t> tags);

// What a message has besides its columns, by tag, without the values: texts, attachments' data and properties
// may be long.
std::vector<std::uint32_t> ListFurtherTags(StoreFile& file, std::int64_t id);

// One row of a message's recipient table; its number, PR_ROWID, is its place in the list, from 0.
struct Recipient
{
    std::int64_t type = 1;    // MAPI_TO, MAPI_CC, MAPI_BCC
    std::string name;
    StoredValue addressType;
    StoredValue address;
};
std::vector<Recipient> ReadRecipients(StoreFile& file, std::int64_t messageId);

// One row of a message's attachment table.
struct Attachment
{
    std::int64_t method = 0;    // PR_ATTACH_METHOD
    StoredValue fileName;
    StoredValue displayName;
    StoredValue mimeTag;
    StoredValue contentId;
    std::int64_t size = 0;
};
std::map<std::int64_t, Attachment> ReadAttachments(StoreFile& file, std::int64_t messageId);    // by number
StoredValue ReadAttachmentData(StoreFile& file, std::int64_t messageId, std::int64_t number);
