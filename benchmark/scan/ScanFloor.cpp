// What finding duplicates in a store costs at the least: `scanfloor STORE` reads every message's subject,
// sender and body once, in the order of the messages, and hashes them. Prints the number of messages and of
// distinct ones.
#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <unordered_set>

namespace
{
struct DatabaseCloser
{
    void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
};

struct StatementFinalizer
{
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};

using Database = std::unique_ptr<sqlite3, DatabaseCloser>;
using Statement = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

Database Open(const char* path)
{
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(path, &opened, SQLITE_OPEN_READONLY, nullptr);
    Database database(opened);
    if (result != SQLITE_OK)
        throw std::runtime_error("the store cannot be opened");
    return database;
}

Statement Prepare(const Database& database, const char* query)
{
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database.get(), query, -1, &prepared, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database.get()));
    return Statement(prepared);
}

std::uint64_t Mixed(std::uint64_t hash, std::string_view text)
{
    hash += text.size();
    std::uint64_t word = 0;
    for (; text.size() >= sizeof word; text.remove_prefix(sizeof word))
    {
        std::memcpy(&word, text.data(), sizeof word);
        hash = (hash ^ word) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
    }
    for (const char character : text)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
    return hash;
}

std::string_view Text(const Statement& statement, int column)
{
    const unsigned char* const text = sqlite3_column_text(statement.get(), column);
    return text ? std::string_view(reinterpret_cast<const char*>(text),
                                   static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column)))
                : std::string_view();
}

void Pass(const char* path)
{
    const Database database = Open(path);
    const Statement query = Prepare(database, "SELECT subject, sender_address, body FROM message "
                                              "JOIN message_text ON message_id = id ORDER BY id");
    std::unordered_set<std::uint64_t> distinct;
    unsigned long long messages = 0;
    int result = sqlite3_step(query.get());
    for (; result == SQLITE_ROW; result = sqlite3_step(query.get()))
    {
        distinct.insert(Mixed(Mixed(Mixed(0, Text(query, 0)), Text(query, 1)), Text(query, 2)));
        ++messages;
    }
    if (result != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(database.get()));
    std::printf("%llu %llu\n", messages, static_cast<unsigned long long>(distinct.size()));
}
}    // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
        return std::fputs("Usage: scanfloor STORE\n", stderr), 1;
    try
    {
        Pass(arguments[1]);
        return 0;
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "scanfloor: %s\n", failure.what());
        return 2;
    }
}
