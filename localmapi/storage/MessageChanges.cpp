#include "localmapi/storage/MessageChanges.h"

#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/StoreError.h"

namespace
{
constexpr std::int64_t hasAttachFlag = 16;

// What a message is that nobody says more about: a note its author has read and not sent.
constexpr const char* defaultMessageClass = "IPM.Note";
constexpr std::int64_t defaultMessageFlags = 1 | 8;

std::int64_t FolderOf(Database& database, std::int64_t messageId)
{
    Statement statement = database.Prepare("SELECT folder_id FROM message WHERE id = ?");
    if (!statement.Bind(1, messageId).Step())
        throw StoreError(StoreFault::NoSuchMessage, "The message is not in the mail store any more.");
    return statement.Integer(0);
}

StoredValue EmptyValueOf(const MessageColumn& column)
{
    if (tag::TypeOf(column.tag) == tag::TypeOf(tag::subject))
        return std::string();
    return std::int64_t{0};
}

void WriteColumn(Database& database, std::int64_t id, const MessageColumn& column, const StoredValue& value)
{
    Statement statement =
        database.Prepare(std::string("UPDATE message SET ") + column.writeTo + " = ? WHERE id = ?");
    const bool absent = std::holds_alternative<std::monostate>(value);
    statement.Bind(1, absent && column.required ? EmptyValueOf(column) : value).Bind(2, id).Run();
}

void WriteText(Database& database, std::int64_t id, std::uint32_t tag, const StoredValue& value)
{
    const std::string column = tag == tag::body ? "body" : "headers";
    Statement statement =
        database.Prepare("INSERT INTO message_text (message_id, " + column +
                         ") VALUES (?1, ?2) ON CONFLICT (message_id) DO UPDATE SET " + column + " = ?2");
    statement.Bind(1, id).Bind(2, value).Run();
}

void WriteFurtherProperty(Database& database, std::int64_t id, std::uint32_t tag, const StoredValue& value)
{
    const bool absent = std::holds_alternative<std::monostate>(value);
    Statement statement = database.Prepare(
        absent ? "DELETE FROM message_property WHERE message_id = ?1 AND tag = ?2"
               : "INSERT OR REPLACE INTO message_property (message_id, tag, value) VALUES (?1, ?2, ?3)");
    statement.Bind(1, id).Bind(2, std::int64_t{tag});
    if (!absent)
        statement.Bind(3, value);
    statement.Run();
}

void WriteProperty(Database& database, std::int64_t id, std::uint32_t tag, const StoredValue& value)
{
    const MessageColumn* column = FindMessageColumn(tag);
    if (IsMessageText(tag))
        WriteText(database, id, tag, value);
    else if (!column)
        WriteFurtherProperty(database, id, tag, value);
    else if (column->writeTo)
        WriteColumn(database, id, *column, value);
}

std::string JoinedNames(const std::vector<Recipient>& recipients, std::int64_t type)
{
    std::string joined;
    for (const Recipient& recipient : recipients)
    {
        if (recipient.type == type)
            joined += (joined.empty() ? "" : "; ") + recipient.name;
    }
    return joined;
}

void WriteRecipients(Database& database, std::int64_t id, const std::vector<Recipient>& recipients)
{
    database.Prepare("DELETE FROM recipient WHERE message_id = ?").Bind(1, id).Run();
    Statement insert =
        database.Prepare("INSERT INTO recipient (message_id, row_id, type, name, address_type, address) "
                         "VALUES (?, ?, ?, ?, ?, ?)");
    std::int64_t rowId = 0;
    for (const Recipient& recipient : recipients)
    {
        insert.Bind(1, id).Bind(2, rowId++).Bind(3, recipient.type).Bind(4, StoredValue(recipient.name));
        insert.Bind(5, recipient.addressType).Bind(6, recipient.address).Run();
    }
    for (const auto& [tag, type] : {std::pair{tag::displayTo, 1}, {tag::displayCc, 2}, {tag::displayBcc, 3}})
        WriteProperty(database, id, tag, JoinedNames(recipients, type));
}

void DeleteAttachment(Database& database, std::int64_t id, std::int64_t number)
{
    for (const char* table : {"attachment", "attachment_data"})
    {
        Statement statement =
            database.Prepare(std::string("DELETE FROM ") + table + " WHERE message_id = ? AND number = ?");
        statement.Bind(1, id).Bind(2, number).Run();
    }
}

void WriteAttachment(Database& database, std::int64_t id, std::int64_t number, const AttachmentChange& change)
{
    const Attachment& record = change.record;
    Statement insert =
        database.Prepare("INSERT OR REPLACE INTO attachment (message_id, number, method, file_name, "
                         "display_name, mime_tag, content_id, size) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    insert.Bind(1, id).Bind(2, number).Bind(3, record.method).Bind(4, record.fileName);
    insert.Bind(5, record.displayName).Bind(6, record.mimeTag).Bind(7, record.contentId);
    insert.Bind(8, change.data ? static_cast<std::int64_t>(change.data->size()) : record.size).Run();
    if (!change.data)
        return;
    Statement insertData = database.Prepare(
        "INSERT OR REPLACE INTO attachment_data (message_id, number, data) VALUES (?, ?, ?)");
    insertData.Bind(1, id).Bind(2, number).Bind(3, StoredValue(*change.data)).Run();
}

void UpdateAttachFlag(Database& database, std::int64_t id)
{
    Statement statement = database.Prepare("UPDATE message SET message_flags = (message_flags & ~?2) | (CASE "
                                           "WHEN EXISTS (SELECT 1 FROM attachment WHERE "
                                           "message_id = ?1) THEN ?2 ELSE 0 END) WHERE id = ?1");
    statement.Bind(1, id).Bind(2, hasAttachFlag).Run();
}

// The bytes of what the message consists of. Only differences of it are added to message_size, whose base may
// be an importer's count of the mail as it came. Sizes in a damaged file may be any number; the sum is kept
// to one that differences can be taken of.
std::int64_t ContentSize(Database& database, std::int64_t id)
{
    Statement statement = database.Prepare(
        "SELECT max(0, min(1e15, length(CAST(m.subject AS BLOB)) + ifnull(length(CAST(t.headers AS BLOB)), "
        "0) + "
        "ifnull(length(CAST(t.body AS BLOB)), 0) + (SELECT total(length(CAST(p.value AS BLOB))) FROM "
        "message_property "
        "AS p WHERE p.message_id = m.id) + (SELECT total(a.size) FROM attachment AS a WHERE a.message_id = "
        "m.id))) "
        "FROM message AS m LEFT JOIN message_text AS t ON t.message_id = m.id WHERE m.id = ?");
    statement.Bind(1, id).Step();
    return statement.Integer(0);
}

void AddToSize(Database& database, std::int64_t id, std::int64_t bytes)
{
    Statement statement =
        database.Prepare("UPDATE message SET message_size = max(message_size + ?, 0) WHERE id = ?");
    statement.Bind(1, bytes).Bind(2, id).Run();
}

void Write(Database& database, std::int64_t id, const MessageChanges& changes)
{
    if (changes.recipients)
        WriteRecipients(database, id, *changes.recipients);
    // After the recipients: display strings that a client sets itself stay as it wrote them.
    for (const auto& [tag, value] : changes.properties)
        WriteProperty(database, id, tag, value);
    for (const std::int64_t number : changes.deletedAttachments)
        DeleteAttachment(database, id, number);
    for (const auto& [number, change] : changes.attachments)
        WriteAttachment(database, id, number, change);
    // Flags that a client copied from another message say nothing of this one's attachments.
    const bool flagsWritten = changes.properties.contains(tag::messageFlags);
    if (flagsWritten || !changes.attachments.empty() || !changes.deletedAttachments.empty())
        UpdateAttachFlag(database, id);
}

// `changes` with the modification time, unless it is told.
MessageChanges WithTime(MessageChanges changes, std::uint32_t timeTag)
{
    changes.properties.try_emplace(timeTag, CurrentFileTime());
    return changes;
}
}    // namespace

bool IsWritableMessageProperty(std::uint32_t tag)
{
    const MessageColumn* column = FindMessageColumn(tag);
    return !column || column->writeTo || IsMessageText(tag);
}

std::int64_t CreateMessage(StoreFile& file, std::int64_t folderId, const MessageChanges& changes)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RaiseContentChange(*lease, folderId);
    Statement insert =
        lease->Prepare("INSERT INTO message (folder_id, message_class, message_flags, subject, display_to, "
                       "display_cc, display_bcc) VALUES (?, ?, ?, '', '', '', '')");
    insert.Bind(1, folderId)
        .Bind(2, StoredValue(std::string(defaultMessageClass)))
        .Bind(3, defaultMessageFlags);
    insert.Run();
    const std::int64_t id = lease->LastInsertId();

    Write(*lease, id, WithTime(WithTime(changes, tag::creationTime), tag::lastModificationTime));
    AddToSize(*lease, id, ContentSize(*lease, id));
    transaction.Commit();
    return id;
}

void UpdateMessage(StoreFile& file, std::int64_t id, const MessageChanges& changes)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RaiseContentChange(*lease, FolderOf(*lease, id));
    const std::int64_t before = ContentSize(*lease, id);

    Write(*lease, id, WithTime(changes, tag::lastModificationTime));
    AddToSize(*lease, id, ContentSize(*lease, id) - before);
    transaction.Commit();
}
