#include "import/StoreWriter.h"

#include "import/Text.h"

#include <ctime>

namespace
{
constexpr int64_t mapiTo = 1;
constexpr int64_t mapiCc = 2;
constexpr int64_t mapiBcc = 3;
constexpr uint32_t typeUnicode = 0x001F;
constexpr uint32_t typeBinary = 0x0102;
constexpr std::string_view smtp = "SMTP";

std::string DisplayNames(const MailRecord& mail, int64_t type)
{
    std::string names;
    for (const RecipientRecord& recipient : mail.recipients)
    {
        if (recipient.type != type)
            continue;
        if (!names.empty())
            names += "; ";
        names += recipient.name;
    }
    return names;
}

std::string_view AddressType(const std::string& address)
{
    return address.empty() ? std::string_view() : smtp;
}

std::optional<int64_t> Number(const std::optional<int>& value)
{
    return value ? std::optional<int64_t>(*value) : std::nullopt;
}
}    // namespace

StoreWriter::StoreWriter(Database& database)
    : database(database),
      now(FileTimeFromUnix(std::time(nullptr))),
      insertMessage(
          database,
          "INSERT INTO message (folder_id, message_class, subject, sender_name, sender_address_type, "
          "sender_address, display_to, display_cc, display_bcc, client_submit_time, delivery_time, "
          "creation_time, last_modification_time, message_flags, message_size, flag_status, importance) "
          "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      insertText(database, "INSERT INTO message_text (message_id, headers, body) VALUES (?, ?, ?)"),
      insertProperty(database, "INSERT INTO message_property (message_id, tag, value) VALUES (?, ?, ?)"),
      insertRecipient(database,
                      "INSERT INTO recipient (message_id, row_id, type, name, address_type, address) "
                      "VALUES (?, ?, ?, ?, ?, ?)"),
      insertAttachment(database,
                       "INSERT INTO attachment (message_id, number, method, file_name, display_name, "
                       "mime_tag, content_id, size) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
      insertAttachmentData(database,
                           "INSERT INTO attachment_data (message_id, number, data) VALUES (?, ?, ?)")
{
    Statement query(database,
                    "SELECT parent_id, name, id FROM folder WHERE parent_id IS NOT NULL ORDER BY id");
    while (query.NextRow())
        folders.try_emplace({query.Number(0), CaseFolded(query.Text(1))}, query.Number(2));
}

int64_t StoreWriter::OpenFolder(int64_t parentId, const std::string& name)
{
    for (int number = 1;; ++number)
    {
        const std::string candidate = number == 1 ? name : name + " (" + std::to_string(number) + ")";
        const auto folder = folders.find({parentId, CaseFolded(candidate)});
        const int64_t id = folder != folders.end() ? folder->second : CreateFolder(parentId, candidate);
        if (openedFolders.insert(id).second)
            return id;
    }
}

int64_t StoreWriter::CreateFolder(int64_t parentId, const std::string& name)
{
    Statement insert(database, "INSERT INTO folder (parent_id, name, container_class, creation_time, "
                               "last_modification_time) VALUES (?, ?, 'IPF.Note', ?, ?)");
    insert.Bind(parentId).Bind(name).Bind(now).Bind(now).Run();
    const int64_t id = database.LastRowId();
    folders.emplace(FolderKey(parentId, CaseFolded(name)), id);
    return id;
}

void StoreWriter::AddMessage(int64_t folderId, const MailRecord& mail)
{
    InsertMessage(folderId, mail);
    InsertParts(database.LastRowId(), mail);
    filledFolders.insert(folderId);
    ++messageCount;
}

void StoreWriter::InsertMessage(int64_t folderId, const MailRecord& mail)
{
    const std::string to = DisplayNames(mail, mapiTo);
    const std::string cc = DisplayNames(mail, mapiCc);
    const std::string bcc = DisplayNames(mail, mapiBcc);
    insertMessage.Bind(folderId).Bind(mail.messageClass).Bind(mail.subject);
    insertMessage.BindTextOrNull(mail.senderName).BindTextOrNull(AddressType(mail.senderAddress));
    insertMessage.BindTextOrNull(mail.senderAddress).Bind(to).Bind(cc).Bind(bcc);
    insertMessage.Bind(mail.submitTime).Bind(mail.deliveryTime).Bind(now).Bind(now);
    insertMessage.Bind(mail.flags).Bind(mail.size).Bind(Number(mail.flagStatus));
    insertMessage.Bind(static_cast<int64_t>(mail.importance)).Run();
}

void StoreWriter::InsertParts(int64_t messageId, const MailRecord& mail)
{
    insertText.Bind(messageId).Bind(mail.headers).Bind(mail.body).Run();
    for (const PropertyRecord& property : mail.properties)
        InsertProperty(messageId, property);
    int64_t row = 0;
    for (const RecipientRecord& recipient : mail.recipients)
    {
        insertRecipient.Bind(messageId)
            .Bind(row++)
            .Bind(static_cast<int64_t>(recipient.type))
            .Bind(recipient.name);
        insertRecipient.BindTextOrNull(AddressType(recipient.address))
            .BindTextOrNull(recipient.address)
            .Run();
    }
    int64_t number = 0;
    for (const AttachmentRecord& attachment : mail.attachments)
    {
        insertAttachment.Bind(messageId).Bind(number).Bind(static_cast<int64_t>(attachment.method));
        insertAttachment.BindTextOrNull(attachment.fileName).BindTextOrNull(attachment.displayName);
        insertAttachment.BindTextOrNull(attachment.mimeTag).BindTextOrNull(attachment.contentId);
        insertAttachment.Bind(static_cast<int64_t>(attachment.data.size())).Run();
        insertAttachmentData.Bind(messageId).Bind(number++).BindBlob(attachment.data).Run();
    }
}

void StoreWriter::InsertProperty(int64_t messageId, const PropertyRecord& property)
{
    insertProperty.Bind(messageId).Bind(static_cast<int64_t>(property.tag));
    const uint32_t type = property.tag & 0xFFFF;
    if (type == typeUnicode)
        insertProperty.Bind(property.bytes);
    else if (type == typeBinary)
        insertProperty.BindBlob(property.bytes);
    else
        insertProperty.Bind(property.number);
    insertProperty.Run();
}

void StoreWriter::Finish()
{
    Statement update(database,
                     "UPDATE folder SET content_change_number = content_change_number + 1 WHERE id = ?");
    for (const int64_t id : filledFolders)
        update.Bind(id).Run();
}
