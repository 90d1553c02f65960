#include "localmapi/storage/StoreFile.h"

#include "localmapi/storage/StoreError.h"

#include <sqlite3.h>

#include <chrono>
#include <filesystem>

namespace
{
constexpr std::int64_t expectedApplicationId = 0x544D5153;
constexpr std::int64_t expectedVersion = 1;
constexpr std::int64_t uidSize = 16;
constexpr std::int64_t specialFolderCount = 11;

std::filesystem::path AsPath(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

// SQLite would report a missing file as one that "cannot be opened".
const std::string& RequireFile(const std::string& path)
{
    std::error_code ignored;
    const auto status = std::filesystem::status(AsPath(path), ignored);
    if (!std::filesystem::exists(status))
        throw StoreError(StoreFault::FileMissing, "The mail store " + path + " does not exist.");
    if (std::filesystem::is_directory(status))
        throw StoreError(StoreFault::NotAStore, path + " is a folder and no mail store.");
    return path;
}

// Whether a column, a default or an index holds an expression, as no store's does: it may take any amount of
// work and memory.
bool ComputesAnything(Database& database)
{
    // An index tells -2 as the number of a column that is none.
    return database.ReadInteger(
               "SELECT EXISTS (SELECT 1 FROM sqlite_schema AS s, pragma_table_xinfo(s.name) AS c WHERE "
               "s.type = 'table' AND (c.hidden <> 0 OR c.dflt_value LIKE '%(%')) "
               "OR EXISTS (SELECT 1 FROM sqlite_schema AS s, pragma_index_list(s.name) AS i, "
               "pragma_index_xinfo(i.name) AS c WHERE s.type = 'table' AND (i.partial OR c.cid = -2))") != 0;
}

// A file that begins well may still have been cut off or overwritten.
void RequireContents(Database& database, const std::string& path)
{
    if (ComputesAnything(database) ||
        database.ReadInteger("SELECT length(value) FROM setting WHERE name = 'store_uid'") != uidSize ||
        database.ReadInteger("SELECT count(*) FROM folder WHERE id BETWEEN 1 AND 11") != specialFolderCount ||
        database.ReadInteger("SELECT count(*) FROM folder WHERE id = 1 AND parent_id IS NULL") != 1)
        throw StoreError(StoreFault::NotAStore, "The mail store " + path + " is damaged.");
}

void RequireFormat(Database& database, const std::string& path)
{
    if (database.ReadInteger("PRAGMA application_id") != expectedApplicationId)
        throw StoreError(StoreFault::NotAStore, "The file " + path + " is no mail store.");
    // Texts are taken as the bytes that stand in the file.
    if (database.ReadText("PRAGMA encoding") != "UTF-8")
        throw StoreError(StoreFault::NotAStore,
                         "The mail store " + path + " is damaged: its texts are not in UTF-8.");
    if (database.ReadInteger("PRAGMA user_version") != expectedVersion)
        throw StoreError(StoreFault::NotAStore, "The mail store " + path + " is of another version.");
    RequireContents(database, path);
}

std::string OpeningFailure(const StoreError& error, const std::string& path)
{
    if (error.sqliteCode == SQLITE_NOTADB)
        return "The file " + path + " is no mail store.";
    if (error.fault == StoreFault::NotAStore)
        return "The mail store " + path + " is damaged.";
    return "The mail store " + path + " cannot be opened. " + error.what();
}

bool ChooseJournal(Database& database)
{
    try
    {
        return database.ChooseLog();
    }
    catch (const StoreError& error)
    {
        // Whoever has the file open now has chosen already, and a file that may only be read needs none.
        if (error.fault != StoreFault::Busy && error.fault != StoreFault::ReadOnly)
            throw;
        return false;
    }
}
}    // namespace

std::shared_ptr<StoreFile> StoreFile::Open(const std::string& path)
{
    try
    {
        return std::make_shared<StoreFile>(path);
    }
    catch (const StoreError& error)
    {
        if (error.sqliteCode == 0)
            throw;
        throw StoreError(error.fault, OpeningFailure(error, path), error.sqliteCode);
    }
}

StoreFile::StoreFile(const std::string& path) : database(RequireFile(path)), readHolder(database, mutex)
{
    // No store has conditions that its values are checked by.
    database.Execute("PRAGMA busy_timeout = 10000; PRAGMA ignore_check_constraints = ON");
    RequireFormat(database, path);
    // Of a write-ahead log a power failure leaves a beginning: whatever of the last commits is lost, the
    // store is as it was before them, and a message that was being moved lies where it lay. The rollback
    // journal has no such order to keep and is written through at each commit.
    database.Execute(ChooseJournal(database) ? "PRAGMA synchronous = NORMAL" : "PRAGMA synchronous = FULL");
    database.Execute("PRAGMA foreign_keys = ON");
}

StoreFile::~StoreFile()
{
    readHolder.Stop();
    database.EndRead();
    database.WriteThrough();
}

StoreFile::Lease::Lease(StoreFile& file) : file(file), lock(file.mutex)
{
    file.readHolder.Hold();
}

StoredValue StoreFile::ReadSetting(const std::string& name)
{
    const Lease lease = Use();
    Statement statement = lease->Prepare("SELECT value FROM setting WHERE name = ?");
    statement.Bind(1, StoredValue(name));
    return statement.Step() ? statement.Value(0) : StoredValue();
}

Blob StoreFile::ReadUid()
{
    const StoredValue uid = ReadSetting("store_uid");
    const Blob* bytes = std::get_if<Blob>(&uid);
    if (!bytes || bytes->size() != uidSize)
        throw StoreError(StoreFault::NotAStore, "The mail store has lost its identity.");
    return *bytes;
}

std::int64_t CurrentFileTime()
{
    constexpr std::int64_t unixEpoch = 116444736000000000;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return unixEpoch + std::chrono::duration_cast<std::chrono::microseconds>(now).count() * 10;
}
