#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// One open SQLite file, for one thread at a time. Every failure is an ImportError that names the file as
// `shownAs`.
class Database
{
public:
    // Opens a file that exists.
    explicit Database(const std::filesystem::path& path) : Database(path, path) {}
    Database(const std::filesystem::path& path, const std::filesystem::path& shownAs);

    void Execute(const char* script);
    int64_t ReadNumber(const char* query);
    int64_t LastRowId() const { return sqlite3_last_insert_rowid(handle.get()); }

    // Throws unless `result` says that all is well.
    void Check(int result) const;

    // Throws when the file cannot be closed in order.
    void Close();

    sqlite3* Handle() const { return handle.get(); }

private:
    struct Closer
    {
        void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
    };

    std::filesystem::path shownAs;
    std::unique_ptr<sqlite3, Closer> handle;
};

// One prepared statement, used again and again. Text and blobs are only borrowed: they must live until Run or
// Reset.
class Statement
{
public:
    // `database` must outlive the statement.
    Statement(Database& database, const char* sql);

    // Binds the next parameter; what is empty is bound as NULL where optional.
    Statement& Bind(int64_t number);
    Statement& Bind(std::optional<int64_t> number);
    Statement& Bind(std::string_view text);
    Statement& BindTextOrNull(std::string_view text);
    Statement& BindBlob(std::string_view bytes);

    // Executes a statement without rows and makes it ready for the next binding.
    void Run();

    // Steps to the next row; false, and ready again, behind the last.
    bool NextRow();
    int64_t Number(int column) const { return sqlite3_column_int64(handle.get(), column); }
    std::string Text(int column) const;

private:
    struct Finalizer
    {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };

    Database& database;
    std::unique_ptr<sqlite3_stmt, Finalizer> handle;
    int bound = 0;
};
