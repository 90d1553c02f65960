#include "import/Database.h"

#include "import/ImportError.h"

#include <cstring>

namespace
{
std::string Reason(sqlite3* handle, int result)
{
    const int systemError = handle ? sqlite3_system_errno(handle) : 0;
    const std::string reason = handle ? sqlite3_errmsg(handle) : sqlite3_errstr(result);
    const bool isSystems = (result & 0xFF) == SQLITE_IOERR || (result & 0xFF) == SQLITE_CANTOPEN;
    return isSystems && systemError != 0 ? reason + " (" + std::strerror(systemError) + ")" : reason;
}
}    // namespace

Database::Database(const std::filesystem::path& path, const std::filesystem::path& shownAs) : shownAs(shownAs)
{
    sqlite3* opened = nullptr;
    // One thread uses the connection, so SQLite need not lock it for each call.
    const int result =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    handle.reset(opened);
    Check(result);
    sqlite3_extended_result_codes(opened, 1);
    // A store that is there may come from anywhere: nothing that its schema holds beside tables and indexes
    // is to run.
    for (const int trusting :
         {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_TRUSTED_SCHEMA})
        sqlite3_db_config(opened, trusting, 0, nullptr);
    // A store that a mail client has open is free again between two of its changes.
    sqlite3_busy_timeout(opened, 5000);
}

void Database::Check(int result) const
{
    if ((result & 0xFF) == SQLITE_BUSY)
        throw StoreInUse("cannot write " + shownAs.string() +
                         ": another program is writing to it; try again when that has ended");
    if (result != SQLITE_OK && result != SQLITE_DONE && result != SQLITE_ROW)
        throw ImportError("cannot write " + shownAs.string() + ": " + Reason(handle.get(), result));
}

void Database::Execute(const char* script)
{
    Check(sqlite3_exec(handle.get(), script, nullptr, nullptr, nullptr));
}

int64_t Database::ReadNumber(const char* query)
{
    Statement statement(*this, query);
    return statement.NextRow() ? statement.Number(0) : 0;
}

void Database::Close()
{
    Check(sqlite3_close(handle.get()));
    handle.release();
}

Statement::Statement(Database& database, const char* sql) : database(database)
{
    sqlite3_stmt* prepared = nullptr;
    const int result =
        sqlite3_prepare_v3(database.Handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    handle.reset(prepared);
    database.Check(result);
}

Statement& Statement::Bind(int64_t number)
{
    database.Check(sqlite3_bind_int64(handle.get(), ++bound, number));
    return *this;
}

Statement& Statement::Bind(std::optional<int64_t> number)
{
    if (number)
        return Bind(*number);
    database.Check(sqlite3_bind_null(handle.get(), ++bound));
    return *this;
}

Statement& Statement::Bind(std::string_view text)
{
    // A null pointer would bind NULL where the text is empty.
    database.Check(sqlite3_bind_text64(handle.get(), ++bound, text.data() ? text.data() : "", text.size(),
                                       SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

Statement& Statement::BindTextOrNull(std::string_view text)
{
    return text.empty() ? Bind(std::optional<int64_t>()) : Bind(text);
}

Statement& Statement::BindBlob(std::string_view bytes)
{
    database.Check(sqlite3_bind_blob64(handle.get(), ++bound, bytes.data() ? bytes.data() : "", bytes.size(),
                                       SQLITE_STATIC));
    return *this;
}

void Statement::Run()
{
    const int result = sqlite3_step(handle.get());
    bound = 0;
    // The step's own error says more than what reset repeats.
    if (result != SQLITE_DONE)
        database.Check(result);
    sqlite3_reset(handle.get());
}

bool Statement::NextRow()
{
    const int result = sqlite3_step(handle.get());
    database.Check(result);
    if (result == SQLITE_ROW)
        return true;
    bound = 0;
    sqlite3_reset(handle.get());
    return false;
}

std::string Statement::Text(int column) const
{
    const unsigned char* const text = sqlite3_column_text(handle.get(), column);
    return text ? reinterpret_cast<const char*>(text) : "";
}
