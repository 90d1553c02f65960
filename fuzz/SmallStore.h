#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct SqliteCloser
{
    void operator()(sqlite3* connection) const noexcept { sqlite3_close_v2(connection); }
};
using SqliteConnection = std::unique_ptr<sqlite3, SqliteCloser>;

// A connection past all checks of the store's own code; throws std::runtime_error.
SqliteConnection ConnectDirectly(const std::filesystem::path& path);

// A store of few small pages, with a folder in a folder and messages that have something of everything.
class SmallStore
{
public:
    SmallStore();

    const std::string& Bytes() const { return bytes; }

    // Writes the store, or these bytes in its stead, to `path` and takes away what an earlier one left beside
    // it.
    void PutTo(const std::filesystem::path& path) const { Put(path, bytes); }
    static void Put(const std::filesystem::path& path, const std::string& bytes);

private:
    std::string bytes;
};
