#pragma once

#include "localmapi/storage/PropertyTag.h"
#include "localmapi/storage/StoreFile.h"

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <vector>

// The folders that every store has, by the ids the file's format gives them.
namespace folder_id
{
inline constexpr std::int64_t root = 1;
inline constexpr std::int64_t ipmSubtree = 2;
inline constexpr std::int64_t inbox = 3;
inline constexpr std::int64_t outbox = 4;
inline constexpr std::int64_t sentItems = 5;
inline constexpr std::int64_t deletedItems = 6;
inline constexpr std::int64_t calendar = 7;
inline constexpr std::int64_t contacts = 8;
inline constexpr std::int64_t tasks = 9;
inline constexpr std::int64_t journal = 10;
inline constexpr std::int64_t notes = 11;
inline constexpr std::int64_t lastSpecial = notes;
}    // namespace folder_id

struct FolderPlace
{
    std::int64_t id;
    std::int64_t depth;    // 0 for the children of the folder asked
};

// The folders below a folder, in the order they were made; with `deep` all of them, parents first, each
// followed by what is below it. Throws NotAStore when the file's folders lead in a circle.
std::vector<FolderPlace> ListFolders(StoreFile& file, std::int64_t parentId, bool deep);

// Values of folders by stored tag; tag::storedFolderId, tag::storedParentId and the properties of
// FolderTags() have values. values[row * tags.size() + column]; monostate everywhere for a folder that is not
// there.
std::vector<StoredValue> ReadFolderRows(StoreFile& file, std::span<const std::int64_t> ids,
                                        std::span<const std::uint32_t> tags);
std::vector<std::uint32_t> FolderTags();

// The child of that name, ASCII letters' case ignored; 0 when there is none.
std::int64_t FindFolder(StoreFile& file, std::int64_t parentId, const std::string& name);

// Each is one transaction.
std::int64_t CreateFolder(StoreFile& file, std::int64_t parentId, const std::string& name,
                          const StoredValue& comment);    // throws NoSuchFolder, NameTaken
bool IsWritableFolderProperty(std::uint32_t tag);
void UpdateFolder(StoreFile& file, std::int64_t id, const std::map<std::uint32_t, StoredValue>& properties);

// Takes the folder away with all that is in it. Throws NoSuchFolder, NotAllowed for the special folders.
void DeleteFolder(StoreFile& file, std::int64_t id);

// Deletes the folder's messages and all folders below it. Throws NotAllowed when one of those is special.
void EmptyFolder(StoreFile& file, std::int64_t id);

// Notes that the folder's messages changed, inside the caller's transaction. Throws NoSuchFolder.
void RaiseContentChange(Database& database, std::int64_t folderId);
