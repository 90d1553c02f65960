// A store file that is sound to SQLite and hostile in what it holds: values of other kinds and sizes than the
// store writes, rows that lead to nothing or in circles, tables that are something else. The input is a list
// of steps, a byte each and their operands.
#include "fuzz/FuzzTarget.h"
#include "fuzz/InputReader.h"
#include "fuzz/ScratchFolder.h"
#include "fuzz/SmallStore.h"
#include "fuzz/StoreWalk.h"

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace
{
struct Table
{
    const char* name;
    std::vector<const char*> columns;
};

const std::array<Table, 9> tables{{
    {"setting", {"name", "value"}},
    {"folder",
     {"id", "parent_id", "name", "container_class", "comment", "creation_time", "last_modification_time",
      "content_change_number"}},
    {"message",
     {"id", "folder_id", "message_class", "subject", "sender_name", "sender_address_type", "sender_address",
      "display_to", "display_cc", "display_bcc", "client_submit_time", "delivery_time", "creation_time",
      "last_modification_time", "message_flags", "message_size", "flag_status", "importance"}},
    {"message_text", {"message_id", "headers", "body"}},
    {"message_property", {"message_id", "tag", "value"}},
    {"recipient", {"message_id", "row_id", "type", "name", "address_type", "address"}},
    {"attachment",
     {"message_id", "number", "method", "file_name", "display_name", "mime_tag", "content_id", "size"}},
    {"attachment_data", {"message_id", "number", "data"}},
    {"named_property", {"id", "guid", "lid", "name"}},
}};

// What a file may hold that the store's own script never makes.
constexpr const char* alienSchemas[] = {
    "DROP INDEX message_by_folder",
    "DROP TABLE message_text",
    "DROP TABLE attachment",
    "DROP TABLE named_property; CREATE TABLE named_property (id, guid, lid, name)",
    "ALTER TABLE message RENAME TO mail; CREATE VIEW message AS SELECT * FROM mail, mail AS again",
    "ALTER TABLE folder RENAME TO f; CREATE VIEW folder AS WITH RECURSIVE n (id) AS (SELECT 1 UNION ALL "
    "SELECT id "
    "+ 1 FROM n) SELECT id, id - 1 AS parent_id, 'x' AS name, NULL AS container_class, NULL AS comment, 0 AS "
    "creation_time, 0 AS last_modification_time, 0 AS content_change_number FROM n",
    "CREATE TRIGGER again AFTER UPDATE ON folder BEGIN INSERT INTO folder (parent_id, name) SELECT 2, "
    "hex(randomblob(9)) FROM folder; END",
    "CREATE TRIGGER gone AFTER DELETE ON message BEGIN DELETE FROM message; END",
    "ALTER TABLE message ADD COLUMN huge AS (zeroblob(100000000))",
    "ALTER TABLE message RENAME COLUMN subject TO was; ALTER TABLE message ADD COLUMN subject AS "
    "(hex(zeroblob(1000000)))",
    "PRAGMA user_version = 2",
    "PRAGMA application_id = 0",
    "PRAGMA journal_mode = WAL",
    "PRAGMA auto_vacuum = 2; VACUUM",
    "DELETE FROM sqlite_sequence",
    "UPDATE sqlite_sequence SET seq = 9223372036854775807",
    "UPDATE sqlite_sequence SET seq = 'many'",
    "CREATE INDEX heavy ON message (subject) WHERE hex(zeroblob(1000000)) = subject",
    "CREATE INDEX computed ON folder (length(name))",
    "DROP TABLE recipient; CREATE TABLE recipient (message_id, row_id, type, name, address_type, "
    "address, more DEFAULT (hex(zeroblob(1000000))))",
    "DROP TABLE named_property; CREATE TABLE named_property (id INTEGER PRIMARY KEY, guid, lid, name CHECK "
    "(hex(zeroblob(1000000)) <> name))",
};

// Bounds on what one statement of the writer may do, for its triggers multiply the rows: in SQLite's
// operations, of which a row takes some dozens, and in bytes of one value.
constexpr int mostOperations = 5'000;
constexpr int longestValue = 4'000'000;

class HostileWriter
{
public:
    HostileWriter(sqlite3* connection, InputReader& input) : connection(connection), input(input)
    {
        sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, longestValue);
        sqlite3_progress_handler(
            connection, mostOperations, [](void*) { return 1; }, nullptr);
    }

    void Write()
    {
        Run("PRAGMA foreign_keys = OFF; PRAGMA synchronous = OFF");
        for (int steps = 0; steps < 40 && !input.AtEnd(); ++steps)
            Step();
    }

private:
    void Step()
    {
        const std::uint8_t kind = input.Byte();
        const Table& table = tables[kind / 8 % tables.size()];
        switch (kind % 8)
        {
        case 0:
            return Run(alienSchemas[input.Byte() % std::size(alienSchemas)]);
        case 1:
            return Run("DELETE FROM " + std::string(table.name) + Which(table));
        case 2:
        case 3:
            return Run("INSERT OR REPLACE INTO " + std::string(table.name) + " VALUES (" + Values(table) +
                       ")");
        default:
            return Run("UPDATE OR REPLACE " + std::string(table.name) + " SET " +
                       table.columns[input.Byte() % table.columns.size()] + " = " + Value() + Which(table));
        }
    }

    // All rows, or those whose first column is a small number.
    std::string Which(const Table& table)
    {
        const std::uint8_t number = input.Byte();
        return number == 0 ? "" : std::string(" WHERE ") + table.columns[0] + " = " + std::to_string(number);
    }

    std::string Values(const Table& table)
    {
        std::string values = Value();
        for (std::size_t column = 1; column < table.columns.size(); ++column)
            values += ", " + Value();
        return values;
    }

    std::string Value()
    {
        switch (input.Byte() % 16)
        {
        case 0:
            return "NULL";
        case 1:
            return "9223372036854775807";
        case 2:
            return "-9223372036854775807 - 1";
        case 3:
            return "1e999";
        case 4:
            return "-1.5";
        case 5:
            return "''";
        case 6:
            return "x''";
        case 7:
            return "zeroblob(" + std::to_string(input.Number(2)) + ")";
        case 8:
            return "CAST(x'" + Hex(input.Bytes(input.Byte() % 24)) + "' AS TEXT)";
        case 9:
            return "x'" + Hex(input.Bytes(input.Byte() % 24)) + "'";
        case 10:
            return std::to_string(input.Number(4));
        case 11:
            return "-" + std::to_string(input.Number(2));
        case 12:
            return std::to_string(std::int64_t{input.Number(4)} << 32);
        default:
            return std::to_string(input.Byte());
        }
    }

    static std::string Hex(const std::string& bytes)
    {
        constexpr const char* digits = "0123456789ABCDEF";
        std::string hex;
        for (const unsigned char byte : bytes)
            hex += {digits[byte >> 4], digits[byte & 15]};
        return hex;
    }

    // What SQLite itself refuses, or what a bound ends, is not in the file, and that is all right.
    void Run(const std::string& sql) { sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr); }

    sqlite3* connection;
    InputReader& input;
};
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const SmallStore whole;
    static const ScratchFolder scratch;
    const std::filesystem::path path = scratch.Path() / "store.db";
    whole.PutTo(path);
    InputReader input(data, size);
    {
        const SqliteConnection connection = ConnectDirectly(path);
        HostileWriter(connection.get(), input).Write();
    }
    WalkStore(path);
    return 0;
}
