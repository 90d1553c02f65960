#include "localmapi/storage/Database.h"

#include "localmapi/storage/StoreError.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace
{
constexpr std::size_t mostIdleStatements = 128;

StoreFault FaultOf(int code)
{
    switch (code & 0xFF)
    {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return StoreFault::NotAStore;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreFault::Busy;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return StoreFault::ReadOnly;
    case SQLITE_FULL:
        return StoreFault::DiskFull;
    default:
        return StoreFault::Other;
    }
}

std::string SentenceOf(sqlite3* connection)
{
    switch (FaultOf(sqlite3_errcode(connection)))
    {
    case StoreFault::Busy:
        return "The mail store is in use by another program.";
    case StoreFault::ReadOnly:
        return "The mail store may only be read.";
    case StoreFault::DiskFull:
        return "The disk that holds the mail store is full.";
    default:
        return std::string("The mail store cannot be used: ") + sqlite3_errmsg(connection) + ".";
    }
}
}    // namespace

void DatabaseCloser::operator()(sqlite3* connection) const noexcept
{
    sqlite3_close_v2(connection);
}

void StatementFinalizer::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

Statement::Statement(Database& database, std::string sql, OwnedStatement statement)
    : database(database),
      sql(std::move(sql)),
      statement(std::move(statement))
{
}

Statement::~Statement()
{
    sqlite3_reset(statement.get());
    sqlite3_clear_bindings(statement.get());
    database.KeepForLater(std::move(sql), std::move(statement));
}

Statement& Statement::Bind(int parameter, std::int64_t value)
{
    if (sqlite3_bind_int64(statement.get(), parameter, value) != SQLITE_OK)
        database.ThrowError();
    return *this;
}

Statement& Statement::Bind(int parameter, const StoredValue& value)
{
    struct Binder
    {
        int operator()(std::monostate) const { return sqlite3_bind_null(target, parameter); }
        int operator()(std::int64_t number) const { return sqlite3_bind_int64(target, parameter, number); }
        int operator()(double number) const { return sqlite3_bind_double(target, parameter, number); }
        int operator()(const std::string& text) const
        {
            return sqlite3_bind_text64(target, parameter, text.data(), text.size(), SQLITE_TRANSIENT,
                                       SQLITE_UTF8);
        }
        int operator()(const Blob& bytes) const
        {
            // A null pointer would bind NULL, which means an absent value, not an empty one.
            if (bytes.empty())
                return sqlite3_bind_zeroblob(target, parameter, 0);
            return sqlite3_bind_blob64(target, parameter, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
        }
        sqlite3_stmt* target;
        int parameter;
    };
    if (std::visit(Binder{statement.get(), parameter}, value) != SQLITE_OK)
        database.ThrowError();
    return *this;
}

bool Statement::Step()
{
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        database.ThrowError();
    return code == SQLITE_ROW;
}

void Statement::Run()
{
    Step();
    sqlite3_reset(statement.get());
}

StoredValue Statement::Value(int column) const
{
    switch (sqlite3_column_type(statement.get(), column))
    {
    case SQLITE_INTEGER:
        return Integer(column);
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement.get(), column);
    case SQLITE_TEXT:
        return Text(column);
    case SQLITE_BLOB:
    {
        const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement.get(), column));
        return Blob(bytes, bytes + sqlite3_column_bytes(statement.get(), column));
    }
    default:
        return {};
    }
}

std::int64_t Statement::Integer(int column) const
{
    return sqlite3_column_int64(statement.get(), column);
}

std::string Statement::Text(int column) const
{
    // As bytes: asked for as text, SQLite would first copy it to put a zero behind it. Of what is no text it
    // makes one.
    if (sqlite3_column_type(statement.get(), column) != SQLITE_TEXT)
        sqlite3_column_text(statement.get(), column);
    const auto* text = static_cast<const char*>(sqlite3_column_blob(statement.get(), column));
    if (!text)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column))};
}

Database::Database(const std::string& path)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(
        path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    connection.reset(opened);
    if (code != SQLITE_OK)
        ThrowError();
    // The file may come from anywhere: nothing that its schema holds beside tables and indexes is to run.
    for (const int trusting :
         {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA})
        sqlite3_db_config(opened, trusting, 0, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

Statement Database::Prepare(const std::string& sql)
{
    ++statementsRun;
    if (auto idle = idleStatements.extract(sql))
        return {*this, std::move(idle.key()), std::move(idle.mapped())};
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v3(connection.get(), sql.data(), static_cast<int>(sql.size()),
                           SQLITE_PREPARE_PERSISTENT, &prepared, nullptr) != SQLITE_OK)
        ThrowError();
    return {*this, sql, OwnedStatement(prepared)};
}

void Database::Execute(const std::string& sql)
{
    if (sqlite3_exec(connection.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        ThrowError();
}

std::int64_t Database::ReadInteger(const std::string& sql)
{
    Statement statement = Prepare(sql);
    return statement.Step() ? statement.Integer(0) : 0;
}

std::string Database::ReadText(const std::string& sql)
{
    Statement statement = Prepare(sql);
    return statement.Step() ? statement.Text(0) : std::string();
}

bool Database::ChooseLog()
{
    // Answers the journal it could get: a file system without shared memory keeps the rollback journal. What
    // a new journal writes into the file is committed, or is not, after the answer.
    Statement choice = Prepare("PRAGMA journal_mode = WAL");
    if (!choice.Step() || choice.Text(0) != "wal")
        return false;
    choice.Run();
    // SQLite opens the log when it next reads, and gives back with it what CurrentStamp maps.
    ReadInteger("PRAGMA schema_version");
    sqlite3_file_control(connection.get(), "main", SQLITE_FCNTL_FILE_POINTER, &fileOfLog);
    return true;
}

std::optional<ChangeStamp> Database::CurrentStamp() const
{
    constexpr int regionSize = 32 * 1024;    // SQLite's own, with which it has mapped the memory
    constexpr int withSharedMemory = 2;
    if (!fileOfLog || !fileOfLog->pMethods || fileOfLog->pMethods->iVersion < withSharedMemory)
        return std::nullopt;
    volatile void* index = nullptr;
    if (fileOfLog->pMethods->xShmMap(fileOfLog, 0, regionSize, 0, &index) != SQLITE_OK || !index)
        return std::nullopt;
    // The log's index begins with a header of this size, which every commit writes anew with the log's new
    // length and a checksum. One that is being written is none that was there before.
    ChangeStamp stamp;
    const auto* header = static_cast<const volatile std::uint8_t*>(index);
    std::copy_n(header, stamp.size(), stamp.begin());
    return stamp;
}

bool Database::IsInTransaction() const
{
    return sqlite3_get_autocommit(connection.get()) == 0;
}

bool Database::HoldRead()
{
    // Before the transaction: what is committed in between makes the stamp an old one.
    const std::optional<ChangeStamp> stamp = CurrentStamp();
    if (stamp && stamp == heldStamp && IsInTransaction())
        return true;
    EndRead();
    if (!stamp)
        return false;
    Prepare("BEGIN").Run();
    heldStamp = stamp;
    return true;
}

void Database::EndRead() noexcept
{
    // A failure does not matter: nothing was written, and the next transaction tells what is wrong.
    if (heldStamp && IsInTransaction())
        sqlite3_exec(connection.get(), "COMMIT", nullptr, nullptr, nullptr);
    heldStamp.reset();
}

void Database::WriteThrough() noexcept
{
    if (!fileOfLog || sqlite3_total_changes64(connection.get()) == 0)
        return;
    // A failure leaves the log to whoever opens the file next.
    sqlite3_busy_timeout(connection.get(), 1000);
    sqlite3_wal_checkpoint_v2(connection.get(), nullptr, SQLITE_CHECKPOINT_FULL, nullptr, nullptr);
}

std::int64_t Database::LastInsertId() const
{
    return sqlite3_last_insert_rowid(connection.get());
}

std::int64_t Database::ChangedRows() const
{
    return sqlite3_changes64(connection.get());
}

void Database::ThrowError() const
{
    const int code = connection ? sqlite3_extended_errcode(connection.get()) : SQLITE_NOMEM;
    throw StoreError(FaultOf(code), SentenceOf(connection.get()), code);
}

void Database::KeepForLater(std::string sql, OwnedStatement statement) noexcept
{
    try
    {
        if (idleStatements.size() >= mostIdleStatements)
            idleStatements.clear();
        idleStatements.insert_or_assign(std::move(sql), std::move(statement));
    }
    catch (const std::bad_alloc&)
    {
        // The statement is finalized instead; it will only be prepared once more.
    }
}

Transaction::Transaction(Database& database) : database(database)
{
    database.EndRead();
    // A write lock from the start: a transaction that reads first could not wait for another writer.
    database.Execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (!open)
        return;
    try
    {
        database.Execute("ROLLBACK");
    }
    catch (const StoreError&)
    {
        // SQLite has rolled back by itself after some failures; then there is nothing left to undo.
    }
}

void Transaction::Commit()
{
    database.Execute("COMMIT");
    open = false;
}
