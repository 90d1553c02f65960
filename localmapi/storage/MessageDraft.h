#pragma once

#include "localmapi/storage/MessageChanges.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <vector>

// A message as one client sees it: what stands in the file, and over it the client's own changes, which
// nobody else sees before Save(). May be used on any thread.
class MessageDraft
{
public:
    static std::shared_ptr<MessageDraft> Open(std::shared_ptr<StoreFile> file,
                                              std::int64_t id);    // NoSuchMessage
    static std::shared_ptr<MessageDraft> Make(std::shared_ptr<StoreFile> file, std::int64_t folderId);

    std::int64_t Id();    // 0 before a new message's first Save
    std::int64_t FolderId();

    // Gives the properties' values, while nobody else may use the draft: `receive` is not to.
    void Read(std::span<const std::uint32_t> tags, const ValueReceiver& receive);
    std::vector<std::uint32_t> ListTags();             // of the properties there are
    void Set(std::uint32_t tag, StoredValue value);    // monostate takes it away

    std::vector<Recipient> Recipients();
    void SetRecipients(std::vector<Recipient> recipients);

    std::map<std::int64_t, Attachment> Attachments();
    StoredValue AttachmentData(std::int64_t number);
    std::int64_t ReserveAttachmentNumber();    // for one that does not exist before it is put; throws Full
    void PutAttachment(std::int64_t number, AttachmentChange change);
    bool DeleteAttachment(std::int64_t number);    // whether it was there

    // Marks the message in the file at once, as MAPI wants it, whatever else is still unsaved.
    void SetRead(bool read);

    // Writes the changes, in one transaction. After a failure they are still the client's unsaved ones.
    void Save();

    MessageDraft(std::shared_ptr<StoreFile> file, std::int64_t id, std::int64_t folderId);

private:
    void LoadColumns();
    void LoadMissing(std::span<const std::uint32_t> tags);
    const StoredValue* Find(std::uint32_t tag) const;
    std::map<std::int64_t, Attachment> CurrentAttachments();

    const std::shared_ptr<StoreFile> file;
    std::mutex mutex;    // guards all below
    std::int64_t id;
    std::int64_t folderId;
    SharedRecord record;                            // as it stands in the file; null for a new one
    std::map<std::uint32_t, StoredValue> loaded;    // of what the record has not
    MessageChanges changes;
    std::int64_t nextAttachmentNumber = 0;
};
