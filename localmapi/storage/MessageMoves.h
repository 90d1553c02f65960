#pragma once

#include "localmapi/storage/StoreFile.h"

#include <cstddef>
#include <span>

// What happens to several messages of a folder at once. Each is one transaction and yields how many messages
// it was done to: those that are not in the folder any more are passed over.
// A target folder that is not there is StoreError NoSuchFolder, and nothing is done.

// A moved message keeps its id.
std::size_t MoveMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                         std::int64_t targetFolderId);
std::size_t CopyMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                         std::int64_t targetFolderId);
std::size_t DeleteMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids);
std::size_t SetMessagesRead(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                            bool read);
