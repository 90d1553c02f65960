#include "localmapi/StoreValues.h"

#include "localmapi/storage/Folders.h"
#include "localmapi/storage/Messages.h"

#include <algorithm>

namespace
{
// Clients open what they may; every object of the file may be changed.
constexpr std::int64_t messageAccess = MAPI_ACCESS_MODIFY | MAPI_ACCESS_READ | MAPI_ACCESS_DELETE;
constexpr std::int64_t folderAccess =
    messageAccess | MAPI_ACCESS_CREATE_HIERARCHY | MAPI_ACCESS_CREATE_CONTENTS;

constexpr std::uint32_t placeTags[] = {tag::entryId,       tag::recordKey,        tag::instanceKey,
                                       tag::parentEntryId, tag::storeEntryId,     tag::storeRecordKey,
                                       tag::objectType,    tag::mappingSignature, tag::access};

struct SpecialFolder
{
    std::uint32_t tag;
    std::int64_t id;
};
// Clients look for these on the root and on the Inbox.
constexpr SpecialFolder specialFolders[] = {{tag::ipmAppointmentEntryId, folder_id::calendar},
                                            {tag::ipmContactEntryId, folder_id::contacts},
                                            {tag::ipmJournalEntryId, folder_id::journal},
                                            {tag::ipmNoteEntryId, folder_id::notes},
                                            {tag::ipmTaskEntryId, folder_id::tasks}};

const SpecialFolder* FindSpecialFolder(std::uint32_t tag)
{
    const auto found = std::find_if(std::begin(specialFolders), std::end(specialFolders),
                                    [tag](const SpecialFolder& folder) { return folder.tag == tag; });
    return found == std::end(specialFolders) ? nullptr : found;
}

bool KnowsSpecialFolders(std::int64_t folderId)
{
    return folderId == folder_id::root || folderId == folder_id::inbox;
}

bool IsPlaceTag(std::uint32_t tag)
{
    return std::find(std::begin(placeTags), std::end(placeTags), tag) != std::end(placeTags);
}

// What entry ids and keys say, alike for folders and messages.
StoredValue PlaceValue(const StoreContext& store, std::uint32_t tag, EntryKind kind, std::int64_t id,
                       std::int64_t parentId)
{
    switch (tag)
    {
    case tag::entryId:
    case tag::recordKey:
    case tag::instanceKey:
        return store.EntryIdOf(kind, id);
    case tag::parentEntryId:
        return store.EntryIdOf(EntryKind::Folder, parentId);
    case tag::storeEntryId:
        return store.EntryIdOf(EntryKind::Store, 0);
    case tag::storeRecordKey:
    case tag::mappingSignature:
        return store.UidBytes();
    case tag::objectType:
        return static_cast<std::int64_t>(kind);
    case tag::access:
        return kind == EntryKind::Folder ? folderAccess : messageAccess;
    case tag::longTermEntryIdFromTable:
        return store.EntryIdOf(kind, id);
    default:
        return {};
    }
}

// The value that a row's place gives, of the number that was read in its stead.
StoredValue FolderPlaceValue(const StoreContext& store, std::uint32_t tag, std::int64_t stored,
                             std::int64_t id)
{
    if (const SpecialFolder* special = FindSpecialFolder(tag))
        return KnowsSpecialFolders(id) ? StoredValue(store.EntryIdOf(EntryKind::Folder, special->id))
                                       : StoredValue();
    return PlaceValue(store, tag, EntryKind::Folder, id, stored);
}

// As PlaceValueOfMessage, but in a row: the one place where short-term ids are given out.
StoredValue RowValueOfMessage(const StoreContext& store, std::uint32_t tag, std::int64_t id,
                              std::int64_t folderId)
{
    if (tag == tag::entryId && store.hasShortTermIds)
        return EncodeEntryId({store.uid, EntryKind::Message, id, true});
    return PlaceValueOfMessage(store, tag, id, folderId);
}

std::uint32_t FolderTagToRead(std::uint32_t tag)
{
    if (tag == tag::parentEntryId)
        return tag::storedParentId;
    return IsPlaceTag(tag) || FindSpecialFolder(tag) ? tag::storedFolderId : tag;
}
}    // namespace

std::vector<StoredValue> ReadFolderValues(const StoreContext& store, std::span<const std::int64_t> ids,
                                          std::span<const std::uint32_t> tags)
{
    std::vector<std::uint32_t> read;
    for (const std::uint32_t tag : tags)
        read.push_back(FolderTagToRead(tag));

    std::vector<StoredValue> values = ReadFolderRows(*store.file, ids, read);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        const std::uint32_t tag = tags[i % tags.size()];
        const auto* stored = std::get_if<std::int64_t>(&values[i]);
        if (stored && read[i % tags.size()] != tag)
            values[i] = FolderPlaceValue(store, tag, *stored, ids[i / tags.size()]);
    }
    return values;
}

std::vector<std::uint32_t> FolderValueTags(std::int64_t folderId)
{
    std::vector<std::uint32_t> tags = FolderTags();
    tags.insert(tags.begin(), std::begin(placeTags), std::end(placeTags));
    if (KnowsSpecialFolders(folderId))
    {
        for (const SpecialFolder& folder : specialFolders)
            tags.push_back(folder.tag);
    }
    return tags;
}

std::vector<StoredValue> ReadContentsValues(const StoreContext& store, std::int64_t folderId,
                                            std::span<const std::int64_t> ids,
                                            std::span<const std::uint32_t> tags)
{
    std::vector<std::uint32_t> read;
    for (const std::uint32_t tag : tags)
        read.push_back(IsPlaceOfMessage(store, tag) ? tag::storedMessageId : tag);

    std::vector<StoredValue> values = ReadMessageRows(*store.file, folderId, ids, read);
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        const std::uint32_t tag = tags[i % tags.size()];
        const bool present = !std::holds_alternative<std::monostate>(values[i]);
        if (present && read[i % tags.size()] != tag)
            values[i] = RowValueOfMessage(store, tag, ids[i / tags.size()], folderId);
    }
    return values;
}

bool IsPlaceOfMessage(const StoreContext& store, std::uint32_t tag)
{
    return IsPlaceTag(tag) || (tag == tag::longTermEntryIdFromTable && store.hasShortTermIds);
}

StoredValue PlaceValueOfMessage(const StoreContext& store, std::uint32_t tag, std::int64_t id,
                                std::int64_t folderId)
{
    return PlaceValue(store, tag, EntryKind::Message, id, folderId);
}

std::vector<std::uint32_t> MessagePlaceTags()
{
    return {std::begin(placeTags), std::end(placeTags)};
}
