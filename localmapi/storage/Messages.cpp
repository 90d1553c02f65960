#include "localmapi/storage/Messages.h"

#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/RowReader.h"
#include "localmapi/storage/StoreError.h"

#include <algorithm>

namespace
{
std::string FurtherPropertyExpression(std::uint32_t tag)
{
    return "(SELECT p.value FROM message_property AS p WHERE p.message_id = r.id AND p.tag = " +
           std::to_string(tag) + ")";
}

std::string ExpressionOf(std::uint32_t tag)
{
    const MessageColumn* column = FindMessageColumn(tag);
    return column ? column->expression : FurtherPropertyExpression(tag);
}

// Only who asks for a text pays for reading the table of texts.
std::string JoinsFor(std::span<const std::uint32_t> tags)
{
    const bool readsText = std::any_of(tags.begin(), tags.end(), IsMessageText);
    return readsText ? " LEFT JOIN message_text AS t ON t.message_id = r.id" : "";
}

std::vector<StoredValue> ReadRows(StoreFile& file, std::string condition, std::span<const std::int64_t> ids,
                                  std::span<const std::uint32_t> tags)
{
    const RowReaderPlan plan{ExpressionOf, JoinsFor(tags), "message", std::move(condition)};
    const StoreFile::Lease lease = file.Use();
    return ReadRowsById(*lease, plan, ids, tags);
}
}    // namespace

std::vector<std::int64_t> ReadMessageIds(StoreFile& file, std::int64_t folderId)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement = lease->Prepare("SELECT id FROM message WHERE folder_id = ? ORDER BY id");
    statement.Bind(1, folderId);
    std::vector<std::int64_t> ids;
    while (statement.Step())
        ids.push_back(statement.Integer(0));
    return ids;
}

std::size_t CountMessages(StoreFile& file, std::int64_t folderId)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement = lease->Prepare("SELECT count(*) FROM message WHERE folder_id = ?");
    statement.Bind(1, folderId).Step();
    return static_cast<std::size_t>(statement.Integer(0));
}

std::vector<StoredValue> ReadMessageRows(StoreFile& file, std::int64_t folderId,
                                         std::span<const std::int64_t> ids,
                                         std::span<const std::uint32_t> tags)
{
    return ReadRows(file, "r.folder_id = " + std::to_string(folderId), ids, tags);
}

std::vector<StoredValue> ReadMessage(StoreFile& file, std::int64_t id, std::span<const std::uint32_t> tags)
{
    std::vector<std::uint32_t> asked(tags.begin(), tags.end());
    asked.push_back(tag::storedMessageId);
    std::vector<StoredValue> values = ReadRows(file, {}, {&id, 1}, asked);
    if (std::holds_alternative<std::monostate>(values.back()))
        throw StoreError(StoreFault::NoSuchMessage, "The message is not in the mail store any more.");
    values.pop_back();
    return values;
}

std::vector<std::uint32_t> ListFurtherTags(StoreFile& file, std::int64_t id)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement =
        lease->Prepare("SELECT tag FROM message_property WHERE message_id = ?1 AND value IS NOT NULL "
                       "UNION ALL SELECT ?2 FROM message_text WHERE message_id = ?1 AND headers IS NOT "
                       "NULL UNION ALL SELECT ?3 FROM message_text WHERE message_id = ?1 AND body IS "
                       "NOT NULL");
    statement.Bind(1, id);
    statement.Bind(2, std::int64_t{tag::transportMessageHeaders}).Bind(3, std::int64_t{tag::body});
    std::vector<std::uint32_t> tags;
    while (statement.Step())
        tags.push_back(static_cast<std::uint32_t>(statement.Integer(0)));
    return tags;
}

std::vector<Recipient> ReadRecipients(StoreFile& file, std::int64_t messageId)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement = lease->Prepare(
        "SELECT type, name, address_type, address FROM recipient WHERE message_id = ? ORDER BY row_id");
    statement.Bind(1, messageId);
    std::vector<Recipient> recipients;
    while (statement.Step())
        recipients.push_back(
            {statement.Integer(0), statement.Text(1), statement.Value(2), statement.Value(3)});
    return recipients;
}

std::map<std::int64_t, Attachment> ReadAttachments(StoreFile& file, std::int64_t messageId)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement =
        lease->Prepare("SELECT number, method, file_name, display_name, mime_tag, content_id, size "
                       "FROM attachment WHERE message_id = ?");
    statement.Bind(1, messageId);
    std::map<std::int64_t, Attachment> attachments;
    while (statement.Step())
        attachments[statement.Integer(0)] = {statement.Integer(1), statement.Value(2), statement.Value(3),
                                             statement.Value(4),   statement.Value(5), statement.Integer(6)};
    return attachments;
}

StoredValue ReadAttachmentData(StoreFile& file, std::int64_t messageId, std::int64_t number)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement =
        lease->Prepare("SELECT data FROM attachment_data WHERE message_id = ? AND number = ?");
    statement.Bind(1, messageId).Bind(2, number);
    return statement.Step() ? statement.Value(0) : StoredValue();
}
