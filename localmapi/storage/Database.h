#pragma once

#include "localmapi/storage/StoredValue.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

struct sqlite3;
struct sqlite3_file;
struct sqlite3_stmt;

struct DatabaseCloser
{
    void operator()(sqlite3* connection) const noexcept;
};
struct StatementFinalizer
{
    void operator()(sqlite3_stmt* statement) const noexcept;
};
using OwnedStatement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

class Database;

// The state of a file that others may change too: two equal stamps mean that nobody has committed anything
// between them.
using ChangeStamp = std::array<std::uint8_t, 48>;

// A prepared statement in use. Goes back to its database's cache, without values, when it ends.
// Parameters count from 1, columns from 0, as SQLite has them.
class Statement
{
public:
    Statement(Database& database, std::string sql, OwnedStatement statement);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    Statement& Bind(int parameter, std::int64_t value);
    Statement& Bind(int parameter, const StoredValue& value);
    bool Step();    // whether there is a (next) row
    void Run();     // for statements without rows; may be called again after new values were bound

    StoredValue Value(int column) const;
    std::int64_t Integer(int column) const;    // 0 for NULL
    std::string Text(int column) const;        // empty for NULL

private:
    Database& database;
    std::string sql;
    OwnedStatement statement;
};

// One SQLite connection with its prepared statements. To be used by one thread at a time.
// Every failure is a StoreError.
class Database
{
public:
    explicit Database(const std::string& path);    // UTF-8; the file must exist

    Statement Prepare(const std::string& sql);
    void Execute(const std::string& sql);
    std::int64_t ReadInteger(const std::string& sql);    // the first column of the first row
    std::string ReadText(const std::string& sql);        // the same as text
    std::int64_t LastInsertId() const;
    std::int64_t ChangedRows() const;    // by the last statement

    // The file's stamp, read from memory without locking anything. Nothing where the journal is none that
    // tells it, or before the first statement has read the file.
    std::optional<ChangeStamp> CurrentStamp() const;

    // Lets the statements that follow share one read transaction, each of which alone would cost several
    // locks of the file. They see the file as it is: the transaction is begun anew when somebody has
    // committed. False, with every statement on its own, where the file has no stamp. A transaction for
    // writing ends it.
    bool HoldRead();
    void EndRead() noexcept;

    // Brings what this connection has committed from the log into the file and both onto the disk, if no
    // other process keeps it from that for long.
    void WriteThrough() noexcept;

    // How many statements were run, for who counts what a job costs.
    std::uint64_t StatementsRun() const { return statementsRun; }

    // Chooses the write-ahead log; false when the file keeps the journal it has.
    bool ChooseLog();

    [[noreturn]] void ThrowError() const;

private:
    friend class Statement;
    void KeepForLater(std::string sql, OwnedStatement statement) noexcept;

    bool IsInTransaction() const;

    std::unique_ptr<sqlite3, DatabaseCloser> connection;
    sqlite3_file* fileOfLog = nullptr;    // the connection's, once it is known to keep a write-ahead log
    std::optional<ChangeStamp> heldStamp;
    std::uint64_t statementsRun = 0;
    std::unordered_map<std::string, OwnedStatement> idleStatements;
};

// Everything until Commit() happens together or, when the transaction ends without it, not at all.
class Transaction
{
public:
    explicit Transaction(Database& database);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void Commit();

private:
    Database& database;
    bool open = true;
};
