#pragma once

#include "localmapi/StoreContext.h"
#include "localmapi/storage/StoredValue.h"

#include <cstdint>
#include <span>
#include <vector>

// Property values of folders and messages as MAPI sees them: those of the file and those that follow from an
// object's place in it (entry ids, keys, object type, access). Tags are in the stored form.

// values[row * tags.size() + column]; monostate everywhere for a folder that is not there.
std::vector<StoredValue> ReadFolderValues(const StoreContext& store, std::span<const std::int64_t> ids,
                                          std::span<const std::uint32_t> tags);
std::vector<std::uint32_t> FolderValueTags(std::int64_t folderId);

// The same for messages of one folder.
std::vector<StoredValue> ReadContentsValues(const StoreContext& store, std::int64_t folderId,
                                            std::span<const std::int64_t> ids,
                                            std::span<const std::uint32_t> tags);

// Whether the property follows from the message's place; then PlaceValueOfMessage has it.
bool IsPlaceOfMessage(const StoreContext& store, std::uint32_t tag);
StoredValue PlaceValueOfMessage(const StoreContext& store, std::uint32_t tag, std::int64_t id,
                                std::int64_t folderId);
std::vector<std::uint32_t> MessagePlaceTags();
