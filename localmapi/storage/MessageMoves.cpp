#include "localmapi/storage/MessageMoves.h"

#include "localmapi/storage/Folders.h"

#include <functional>

namespace
{
// Runs `change`, which says whether it found the message, on each; raises the folders' numbers when it did.
std::size_t ChangeEach(StoreFile& file, std::span<const std::int64_t> ids,
                       std::span<const std::int64_t> folderIds,
                       const std::function<bool(Database&, std::int64_t)>& change)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    for (const std::int64_t folderId : folderIds)
        RaiseContentChange(*lease, folderId);
    std::size_t changed = 0;
    for (const std::int64_t id : ids)
        changed += change(*lease, id) ? 1 : 0;
    if (changed > 0)
        transaction.Commit();
    return changed;
}

bool CopyMessage(Database& database, std::int64_t folderId, std::int64_t id, std::int64_t targetFolderId)
{
    const std::string columns = "message_class, subject, sender_name, sender_address_type, sender_address, "
                                "display_to, display_cc, display_bcc, "
                                "client_submit_time, delivery_time, creation_time, last_modification_time, "
                                "message_flags, message_size, "
                                "flag_status, importance";
    Statement copyRow = database.Prepare("INSERT INTO message (folder_id, " + columns + ") SELECT ?, " +
                                         columns + " FROM message WHERE id = ? AND folder_id = ?");
    copyRow.Bind(1, targetFolderId).Bind(2, id).Bind(3, folderId).Run();
    if (database.ChangedRows() == 0)
        return false;
    const std::int64_t copy = database.LastInsertId();

    struct Part
    {
        const char* table;
        const char* columns;
    };
    for (const Part& part :
         {Part{"message_text", "headers, body"}, Part{"message_property", "tag, value"},
          Part{"recipient", "row_id, type, name, address_type, address"},
          Part{"attachment", "number, method, file_name, display_name, mime_tag, content_id, size"},
          Part{"attachment_data", "number, data"}})
    {
        Statement copyPart =
            database.Prepare(std::string("INSERT INTO ") + part.table + " (message_id, " + part.columns +
                             ") SELECT ?, " + part.columns + " FROM " + part.table + " WHERE message_id = ?");
        copyPart.Bind(1, copy).Bind(2, id).Run();
    }
    return true;
}
}    // namespace

std::size_t MoveMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                         std::int64_t targetFolderId)
{
    const std::int64_t folders[] = {folderId, targetFolderId};
    return ChangeEach(file, ids, folders,
                      [&](Database& database, std::int64_t id)
                      {
                          Statement move = database.Prepare(
                              "UPDATE message SET folder_id = ? WHERE id = ? AND folder_id = ?");
                          move.Bind(1, targetFolderId).Bind(2, id).Bind(3, folderId).Run();
                          return database.ChangedRows() > 0;
                      });
}

std::size_t CopyMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                         std::int64_t targetFolderId)
{
    return ChangeEach(file, ids, {&targetFolderId, 1},
                      [&](Database& database, std::int64_t id)
                      { return CopyMessage(database, folderId, id, targetFolderId); });
}

std::size_t DeleteMessages(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids)
{
    return ChangeEach(
        file, ids, {&folderId, 1},
        [&](Database& database, std::int64_t id)
        {
            Statement deleteRow = database.Prepare("DELETE FROM message WHERE id = ? AND folder_id = ?");
            deleteRow.Bind(1, id).Bind(2, folderId).Run();
            if (database.ChangedRows() == 0)
                return false;
            // The only table of a message's that does not follow it by itself.
            database.Prepare("DELETE FROM attachment_data WHERE message_id = ?").Bind(1, id).Run();
            return true;
        });
}

std::size_t SetMessagesRead(StoreFile& file, std::int64_t folderId, std::span<const std::int64_t> ids,
                            bool read)
{
    constexpr std::int64_t readFlag = 1;
    return ChangeEach(
        file, ids, {&folderId, 1},
        [&](Database& database, std::int64_t id)
        {
            Statement mark = database.Prepare("UPDATE message SET message_flags = (message_flags & ~?1) | ?2 "
                                              "WHERE id = ?3 AND folder_id = ?4");
            mark.Bind(1, readFlag).Bind(2, read ? readFlag : 0).Bind(3, id).Bind(4, folderId).Run();
            return database.ChangedRows() > 0;
        });
}
