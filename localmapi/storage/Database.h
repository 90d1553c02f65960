#pragma once

#include "localmapi/storage/StoredValue.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

struct sqlite3;
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
    std::int64_t LastInsertId() const;
    std::int64_t ChangedRows() const;    // by the last statement

    [[noreturn]] void ThrowError() const;

private:
    friend class Statement;
    void KeepForLater(std::string sql, OwnedStatement statement) noexcept;

    std::unique_ptr<sqlite3, DatabaseCloser> connection;
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
