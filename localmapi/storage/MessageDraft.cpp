#include "localmapi/storage/MessageDraft.h"

#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/StoreError.h"

#include <algorithm>

namespace
{
constexpr std::int64_t lastAttachmentNumber = 0x7FFFFFFF;    // PR_ATTACH_NUM is a PT_LONG

bool IsStoresOwn(std::uint32_t tag)
{
    return tag == tag::storedMessageId || tag == tag::storedFolderId;
}
}    // namespace

std::shared_ptr<MessageDraft> MessageDraft::Open(std::shared_ptr<StoreFile> file, std::int64_t id)
{
    auto draft = std::make_shared<MessageDraft>(std::move(file), id, 0);
    draft->LoadColumns();
    return draft;
}

std::shared_ptr<MessageDraft> MessageDraft::Make(std::shared_ptr<StoreFile> file, std::int64_t folderId)
{
    return std::make_shared<MessageDraft>(std::move(file), 0, folderId);
}

MessageDraft::MessageDraft(std::shared_ptr<StoreFile> file, std::int64_t id, std::int64_t folderId)
    : file(std::move(file)),
      id(id),
      folderId(folderId)
{
}

std::int64_t MessageDraft::Id()
{
    const std::lock_guard lock(mutex);
    return id;
}

std::int64_t MessageDraft::FolderId()
{
    const std::lock_guard lock(mutex);
    return folderId;
}

void MessageDraft::Read(std::span<const std::uint32_t> tags, const ValueReceiver& receive)
{
    static const StoredValue absent;
    const std::lock_guard lock(mutex);
    LoadMissing(tags);
    for (std::size_t place = 0; place < tags.size(); ++place)
    {
        const StoredValue* value = Find(tags[place]);
        receive(place, value ? *value : absent);
    }
}

std::vector<std::uint32_t> MessageDraft::ListTags()
{
    const std::lock_guard lock(mutex);
    std::set<std::uint32_t> tags;
    for (const MessageColumn& column : MessageColumns())
    {
        const StoredValue* value = record ? record->Find(column.tag) : nullptr;
        if (value && !IsStoresOwn(column.tag) && !std::holds_alternative<std::monostate>(*value))
            tags.insert(column.tag);
    }
    if (id != 0)
    {
        const std::vector<std::uint32_t> further = ListFurtherTags(*file, id);
        tags.insert(further.begin(), further.end());
    }
    for (const auto& [tag, value] : changes.properties)
    {
        if (std::holds_alternative<std::monostate>(value))
            tags.erase(tag);
        else
            tags.insert(tag);
    }
    return {tags.begin(), tags.end()};
}

void MessageDraft::Set(std::uint32_t tag, StoredValue value)
{
    const std::lock_guard lock(mutex);
    changes.properties.insert_or_assign(tag, std::move(value));
}

std::vector<Recipient> MessageDraft::Recipients()
{
    const std::lock_guard lock(mutex);
    if (changes.recipients)
        return *changes.recipients;
    return id == 0 ? std::vector<Recipient>() : ReadRecipients(*file, id);
}

void MessageDraft::SetRecipients(std::vector<Recipient> recipients)
{
    const std::lock_guard lock(mutex);
    changes.recipients = std::move(recipients);
}

std::map<std::int64_t, Attachment> MessageDraft::Attachments()
{
    const std::lock_guard lock(mutex);
    return CurrentAttachments();
}

StoredValue MessageDraft::AttachmentData(std::int64_t number)
{
    const std::lock_guard lock(mutex);
    const auto changed = changes.attachments.find(number);
    if (changed != changes.attachments.end() && changed->second.data)
        return *changed->second.data;
    return id == 0 ? StoredValue() : ReadAttachmentData(*file, id, number);
}

std::int64_t MessageDraft::ReserveAttachmentNumber()
{
    const std::lock_guard lock(mutex);
    const std::map<std::int64_t, Attachment> stored =
        id == 0 ? std::map<std::int64_t, Attachment>() : ReadAttachments(*file, id);
    if (!stored.empty())
        nextAttachmentNumber =
            std::max(nextAttachmentNumber, std::min(stored.rbegin()->first, lastAttachmentNumber) + 1);
    if (nextAttachmentNumber > lastAttachmentNumber)
        throw StoreError(StoreFault::Full, "The message has no room for more attachments.");
    return nextAttachmentNumber++;
}

void MessageDraft::PutAttachment(std::int64_t number, AttachmentChange change)
{
    const std::lock_guard lock(mutex);
    // A content put earlier and not saved yet is not in the file to stay what it was.
    const auto earlier = changes.attachments.find(number);
    if (!change.data && earlier != changes.attachments.end())
        change.data = std::move(earlier->second.data);
    if (change.data)
        change.record.size = static_cast<std::int64_t>(change.data->size());
    changes.deletedAttachments.erase(number);
    changes.attachments.insert_or_assign(number, std::move(change));
}

bool MessageDraft::DeleteAttachment(std::int64_t number)
{
    const std::lock_guard lock(mutex);
    if (!CurrentAttachments().contains(number))
        return false;
    changes.attachments.erase(number);
    changes.deletedAttachments.insert(number);
    return true;
}

void MessageDraft::SetRead(bool read)
{
    const std::lock_guard lock(mutex);
    SetMessagesRead(*file, folderId, {&id, 1}, read);
    LoadColumns();
}

void MessageDraft::Save()
{
    const std::lock_guard lock(mutex);
    if (id == 0)
        id = CreateMessage(*file, folderId, changes);
    else
        UpdateMessage(*file, id, changes);
    changes = {};
    LoadColumns();
}

// Also tells whether the message is there at all.
void MessageDraft::LoadColumns()
{
    const StoreFile::Lease lease = file->Use();
    record = lease.Messages().Read(*lease, id);
    if (!record)
        throw StoreError(StoreFault::NoSuchMessage, "The message is not in the mail store any more.");
    loaded.clear();
    folderId = record->FolderId();
}

// One statement for all that is asked and not known yet; who reads one of the texts mostly wants both.
void MessageDraft::LoadMissing(std::span<const std::uint32_t> tags)
{
    std::vector<std::uint32_t> missing;
    for (const std::uint32_t tag : tags)
    {
        if (!Find(tag))
            missing.push_back(tag);
    }
    if (missing.empty() || id == 0)
        return;
    if (std::any_of(missing.begin(), missing.end(), IsMessageText))
        missing.insert(missing.end(), {tag::transportMessageHeaders, tag::body});
    std::vector<StoredValue> values = ReadMessage(*file, id, missing);
    for (std::size_t i = 0; i < missing.size(); ++i)
        loaded.insert_or_assign(missing[i], std::move(values[i]));
}

// What is known of the property, null when it is to be read first.
const StoredValue* MessageDraft::Find(std::uint32_t tag) const
{
    if (const auto changed = changes.properties.find(tag); changed != changes.properties.end())
        return &changed->second;
    if (const StoredValue* value = record ? record->Find(tag) : nullptr)
        return value;
    const auto found = loaded.find(tag);
    return found == loaded.end() ? nullptr : &found->second;
}

std::map<std::int64_t, Attachment> MessageDraft::CurrentAttachments()
{
    std::map<std::int64_t, Attachment> attachments;
    if (id != 0)
        attachments = ReadAttachments(*file, id);
    for (const std::int64_t number : changes.deletedAttachments)
        attachments.erase(number);
    for (const auto& [number, change] : changes.attachments)
        attachments.insert_or_assign(number, change.record);
    return attachments;
}
