#include "tests/console/MailFile.h"

#include "contracts/LocalStoreSchema.h"

#include <windows.h>

#include <sqlite3.h>

#include <stdexcept>
#include <variant>

namespace
{
using Value = std::variant<std::nullptr_t, long long, std::string>;

struct StatementCloser
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

void Check(bool succeeded, sqlite3* database)
{
    if (!succeeded)
        throw std::runtime_error(sqlite3_errmsg(database));
}

void Bind(sqlite3_stmt* statement, int place, const Value& value)
{
    if (const auto* number = std::get_if<long long>(&value))
        sqlite3_bind_int64(statement, place, *number);
    else if (const auto* text = std::get_if<std::string>(&value))
        sqlite3_bind_text(statement, place, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
}

std::vector<std::string> Run(sqlite3* database, const std::string& sql, const std::vector<Value>& values = {})
{
    sqlite3_stmt* prepared = nullptr;
    Check(sqlite3_prepare_v2(database, sql.c_str(), -1, &prepared, nullptr) == SQLITE_OK, database);
    const Statement statement(prepared);
    for (int i = 0; i < static_cast<int>(values.size()); ++i)
        Bind(prepared, i + 1, values[i]);
    std::vector<std::string> rows;
    int result = 0;
    while ((result = sqlite3_step(prepared)) == SQLITE_ROW)
    {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0));
        rows.emplace_back(text ? text : "");
    }
    Check(result == SQLITE_DONE, database);
    return rows;
}

Value TextOrNull(const std::string& text)
{
    return text.empty() ? Value(nullptr) : Value(text);
}

void AddMail(sqlite3* database, const Mail& mail)
{
    constexpr long long read = 1;
    constexpr long long hasAttachment = 16;
    Run(database,
        "INSERT INTO message (folder_id, message_class, subject, sender_name, sender_address_type, "
        "sender_address,"
        " display_to, display_cc, display_bcc, client_submit_time, delivery_time, message_flags)"
        " VALUES (?, 'IPM.Note', ?, ?, 'SMTP', ?, ?, '', '', ?, ?, ?)",
        {mail.folder, mail.subject, mail.senderName, mail.senderAddress, mail.recipient, mail.submitTime,
         mail.deliveryTime, mail.attachment.empty() ? read : read | hasAttachment});
    const long long id = sqlite3_last_insert_rowid(database);
    Run(database, "INSERT INTO message_text VALUES (?, ?, ?)", {id, TextOrNull(mail.headers), mail.body});
    Run(database, "INSERT INTO recipient VALUES (?, 0, 1, ?, 'SMTP', 'bob@example.org')",
        {id, mail.recipient});
    if (mail.attachment.empty())
        return;
    Run(database,
        "INSERT INTO attachment (message_id, number, method, file_name, display_name, size) VALUES (?, 0, 1, "
        "?, ?, 4)",
        {id, mail.attachment, mail.attachment});
    Run(database, "INSERT INTO attachment_data VALUES (?, 0, x'00010203')", {id});
}

std::filesystem::path MakeUniquePath()
{
    // Process ids come again; a run that was killed may have left its file.
    static unsigned long long last = GetTickCount64();
    return std::filesystem::temp_directory_path() /
           (L"tqodr-store-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++last) +
            L".db");
}
}    // namespace

void MailFile::Closer::operator()(sqlite3* database) const
{
    sqlite3_close(database);
}

MailFile::MailFile() : path(MakeUniquePath())
{
    const Database database = Open();
    Check(sqlite3_exec(database.get(), localStoreSql, nullptr, nullptr, nullptr) == SQLITE_OK,
          database.get());
}

MailFile::~MailFile()
{
    for (const wchar_t* ending : {L"", L"-wal", L"-shm", L"-journal"})
    {
        std::error_code ignored;
        std::filesystem::remove(path.wstring() + ending, ignored);
    }
}

MailFile::Database MailFile::Open() const
{
    sqlite3* opened = nullptr;
    // By the other form of the call a file that is not there yet would get its texts in UTF-16.
    const std::u8string name = path.u8string();
    const int result = sqlite3_open(reinterpret_cast<const char*>(name.c_str()), &opened);
    Database database(opened);
    Check(result == SQLITE_OK, opened);
    sqlite3_busy_timeout(opened, 10'000);
    return database;
}

long long MailFile::AddFolder(const std::string& name, long long parent)
{
    const Database database = Open();
    Run(database.get(), "INSERT INTO folder (parent_id, name, container_class) VALUES (?, ?, 'IPF.Note')",
        {parent, name});
    return sqlite3_last_insert_rowid(database.get());
}

void MailFile::Add(const std::vector<Mail>& mails)
{
    const Database database = Open();
    Run(database.get(), "BEGIN");
    for (const Mail& mail : mails)
        AddMail(database.get(), mail);
    Run(database.get(), "COMMIT");
}

std::vector<std::string> MailFile::ListMessages() const
{
    return Query("SELECT f.name || '/' || m.subject FROM message m JOIN folder f ON f.id = m.folder_id"
                 " ORDER BY f.name COLLATE BINARY, m.subject COLLATE BINARY");
}

std::vector<std::string> MailFile::Query(const std::string& sql) const
{
    return Run(Open().get(), sql);
}
