#pragma once

#include "localmapi/storage/Messages.h"

#include <map>
#include <optional>
#include <set>
#include <vector>

// An attachment to be written.
struct AttachmentChange
{
    Attachment record;           // its size is taken from `data` when that is given
    std::optional<Blob> data;    // not given: the content stays what it was
};

// What is to be changed in one message.
struct MessageChanges
{
    std::map<std::uint32_t, StoredValue> properties;     // by stored tag; monostate takes the property away
    std::optional<std::vector<Recipient>> recipients;    // given: replaces them all, and the display strings
    std::map<std::int64_t, AttachmentChange> attachments;    // added or replaced, by number
    std::set<std::int64_t> deletedAttachments;
};

// Whether a client may set the property; what the store computes itself may not be set.
bool IsWritableMessageProperty(std::uint32_t tag);

// Both are one transaction. Times and flags that the changes leave out are the store's to fill: creation and
// modification time, MSGFLAG_HASATTACH, the size.

// Makes a message; yields its id. Throws StoreError NoSuchFolder.
std::int64_t CreateMessage(StoreFile& file, std::int64_t folderId, const MessageChanges& changes);

// Throws StoreError NoSuchMessage.
void UpdateMessage(StoreFile& file, std::int64_t id, const MessageChanges& changes);
