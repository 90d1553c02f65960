#include "localmapi/storage/Folders.h"

#include "localmapi/storage/RowReader.h"
#include "localmapi/storage/StoreError.h"

#include <sqlite3.h>

#include <algorithm>

namespace
{
struct FolderColumn
{
    std::uint32_t tag;
    const char* expression;    // SQL; r is the folder
    const char* writeTo;       // the column a client may set
};

constexpr FolderColumn columns[] = {
    {tag::storedFolderId, "r.id", nullptr},
    {tag::storedParentId, "ifnull(r.parent_id, r.id)", nullptr},    // the root is its own parent
    {tag::displayName, "r.name", "name"},
    {tag::comment, "r.comment", "comment"},
    {tag::containerClass, "r.container_class", "container_class"},
    {tag::creationTime, "r.creation_time", nullptr},
    {tag::lastModificationTime, "r.last_modification_time", nullptr},
    {tag::folderType, "r.parent_id IS NOT NULL", nullptr},    // FOLDER_ROOT 0, FOLDER_GENERIC 1
    {tag::contentCount, "(SELECT count(*) FROM message AS m WHERE m.folder_id = r.id)", nullptr},
    {tag::contentUnread,
     "(SELECT count(*) FROM message AS m WHERE m.folder_id = r.id AND (m.message_flags & 1) = 0)", nullptr},
    {tag::subfolders, "EXISTS (SELECT 1 FROM folder AS c WHERE c.parent_id = r.id)", nullptr},
    // A second for each change, from 2000-01-01 on: no two states of the contents have the same time, in
    // whatever grain a client keeps it.
    {tag::localCommitTimeMax, "125911584000000000 + r.content_change_number * 10000000", nullptr},
};

const FolderColumn* FindColumn(std::uint32_t tag)
{
    const auto found = std::find_if(std::begin(columns), std::end(columns),
                                    [tag](const FolderColumn& column) { return column.tag == tag; });
    return found == std::end(columns) ? nullptr : found;
}

std::string ExpressionOf(std::uint32_t tag)
{
    const FolderColumn* column = FindColumn(tag);
    return column ? column->expression : "NULL";
}

[[noreturn]] void ThrowNoSuchFolder()
{
    throw StoreError(StoreFault::NoSuchFolder, "The folder is not in the mail store any more.");
}

void RequireFolder(Database& database, std::int64_t id)
{
    if (!database.Prepare("SELECT 1 FROM folder WHERE id = ?").Bind(1, id).Step())
        ThrowNoSuchFolder();
}

// Runs a statement that gives a folder its name.
void RunNaming(Statement& statement)
{
    try
    {
        statement.Run();
    }
    catch (const StoreError& error)
    {
        if (error.sqliteCode == SQLITE_CONSTRAINT_UNIQUE)
            throw StoreError(StoreFault::NameTaken, "There is a folder of that name already.");
        throw;
    }
}

// All folders below one, parents first, each followed by what is below it.
std::vector<FolderPlace> ListTree(Database& database, std::int64_t top)
{
    // Ordering the queue by depth, deepest first, walks the tree in pre-order. A sound file has fewer folders
    // below one than in all; the walk of a file whose folders lead in a circle would never end.
    Statement statement = database.Prepare(
        "WITH RECURSIVE tree (id, depth) AS (SELECT id, 0 FROM folder WHERE parent_id = ?1 UNION ALL SELECT "
        "f.id, tree.depth + 1 FROM tree JOIN folder AS f ON f.parent_id = tree.id ORDER BY 2 DESC, 1 LIMIT "
        "(SELECT count(*) FROM folder)) SELECT id, depth, (SELECT count(*) FROM folder) FROM tree");
    statement.Bind(1, top);
    std::vector<FolderPlace> places;
    std::int64_t folderCount = 1;
    while (statement.Step())
    {
        places.push_back({statement.Integer(0), statement.Integer(1)});
        folderCount = statement.Integer(2);
    }
    if (static_cast<std::int64_t>(places.size()) >= folderCount)
        throw StoreError(StoreFault::NotAStore, "The mail store is damaged: its folders lead in a circle.");
    return places;
}

// The folder and all below it, children first, as foreign keys want them deleted.
std::vector<std::int64_t> ListTreeBottomUp(Database& database, std::int64_t id)
{
    std::vector<std::int64_t> ids = {id};
    for (const FolderPlace& place : ListTree(database, id))
        ids.push_back(place.id);
    std::ranges::reverse(ids);
    return ids;
}

void DeleteContents(Database& database, std::int64_t folderId)
{
    database
        .Prepare(
            "DELETE FROM attachment_data WHERE message_id IN (SELECT id FROM message WHERE folder_id = ?)")
        .Bind(1, folderId)
        .Run();
    database.Prepare("DELETE FROM message WHERE folder_id = ?").Bind(1, folderId).Run();
}

void DeleteTree(Database& database, std::int64_t id, bool withTop)
{
    for (const std::int64_t each : ListTreeBottomUp(database, id))
    {
        DeleteContents(database, each);
        if (each == id && !withTop)
            continue;
        if (each <= folder_id::lastSpecial)
            throw StoreError(StoreFault::NotAllowed, "The folders every mail store has cannot be deleted.");
        database.Prepare("DELETE FROM folder WHERE id = ?").Bind(1, each).Run();
    }
}
}    // namespace

std::vector<FolderPlace> ListFolders(StoreFile& file, std::int64_t parentId, bool deep)
{
    const StoreFile::Lease lease = file.Use();
    if (deep)
        return ListTree(*lease, parentId);
    Statement statement = lease->Prepare("SELECT id FROM folder WHERE parent_id = ? ORDER BY id");
    statement.Bind(1, parentId);
    std::vector<FolderPlace> places;
    while (statement.Step())
        places.push_back({statement.Integer(0), 0});
    return places;
}

std::vector<StoredValue> ReadFolderRows(StoreFile& file, std::span<const std::int64_t> ids,
                                        std::span<const std::uint32_t> tags)
{
    const StoreFile::Lease lease = file.Use();
    return ReadRowsById(*lease, {ExpressionOf, "", "folder", ""}, ids, tags);
}

std::vector<std::uint32_t> FolderTags()
{
    std::vector<std::uint32_t> tags;
    for (const FolderColumn& column : columns)
    {
        if (column.tag != tag::storedFolderId && column.tag != tag::storedParentId)
            tags.push_back(column.tag);
    }
    return tags;
}

std::int64_t FindFolder(StoreFile& file, std::int64_t parentId, const std::string& name)
{
    const StoreFile::Lease lease = file.Use();
    Statement statement = lease->Prepare("SELECT id FROM folder WHERE parent_id = ? AND name = ?");
    return statement.Bind(1, parentId).Bind(2, StoredValue(name)).Step() ? statement.Integer(0) : 0;
}

std::int64_t CreateFolder(StoreFile& file, std::int64_t parentId, const std::string& name,
                          const StoredValue& comment)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RequireFolder(*lease, parentId);
    // A folder holds what its parent holds, as users expect of a folder made below their mail.
    Statement insert = lease->Prepare(
        "INSERT INTO folder (parent_id, name, container_class, comment, creation_time, "
        "last_modification_time) "
        "SELECT id, ?2, ifnull(container_class, 'IPF.Note'), ?3, ?4, ?4 FROM folder WHERE id = ?1");
    insert.Bind(1, parentId).Bind(2, StoredValue(name)).Bind(3, comment).Bind(4, CurrentFileTime());
    RunNaming(insert);
    const std::int64_t id = lease->LastInsertId();
    transaction.Commit();
    return id;
}

bool IsWritableFolderProperty(std::uint32_t tag)
{
    const FolderColumn* column = FindColumn(tag);
    return column && column->writeTo;
}

void UpdateFolder(StoreFile& file, std::int64_t id, const std::map<std::uint32_t, StoredValue>& properties)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RequireFolder(*lease, id);
    for (const auto& [tag, value] : properties)
    {
        Statement update = lease->Prepare(std::string("UPDATE folder SET ") + FindColumn(tag)->writeTo +
                                          " = ?, last_modification_time = ? WHERE id = ?");
        update.Bind(1, value).Bind(2, CurrentFileTime()).Bind(3, id);
        RunNaming(update);
    }
    transaction.Commit();
}

void DeleteFolder(StoreFile& file, std::int64_t id)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RequireFolder(*lease, id);
    DeleteTree(*lease, id, true);
    transaction.Commit();
}

void EmptyFolder(StoreFile& file, std::int64_t id)
{
    const StoreFile::Lease lease = file.Use();
    Transaction transaction(*lease);
    RaiseContentChange(*lease, id);
    DeleteTree(*lease, id, false);
    transaction.Commit();
}

void RaiseContentChange(Database& database, std::int64_t folderId)
{
    Statement raise = database.Prepare("UPDATE folder SET content_change_number = content_change_number + 1, "
                                       "last_modification_time = ? WHERE id = ?");
    raise.Bind(1, CurrentFileTime()).Bind(2, folderId).Run();
    if (database.ChangedRows() == 0)
        ThrowNoSuchFolder();
}
