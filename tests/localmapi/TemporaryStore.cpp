#include "tests/localmapi/TemporaryStore.h"

#include "contracts/LocalStoreSchema.h"
#include "localmapi/storage/MessageChanges.h"
#include "localmapi/storage/PropertyTag.h"

#include <sqlite3.h>

#include <random>
#include <stdexcept>

namespace
{
struct Closer
{
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};

std::unique_ptr<sqlite3, Closer> Connect(const std::string& path)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open(path.c_str(), &opened);
    std::unique_ptr<sqlite3, Closer> connection(opened);
    if (code != SQLITE_OK)
        throw std::runtime_error("cannot open " + path);
    sqlite3_busy_timeout(opened, 10000);
    return connection;
}

std::vector<std::string> Query(const std::string& path, const std::string& sql)
{
    std::vector<std::string> lines;
    const auto collect = [](void* target, int, char** values, char**)
    {
        static_cast<std::vector<std::string>*>(target)->push_back(values[0] ? values[0] : "");
        return 0;
    };
    const auto connection = Connect(path);
    if (sqlite3_exec(connection.get(), sql.c_str(), collect, &lines, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
    return lines;
}
}    // namespace

TemporaryStore::TemporaryStore()
{
    std::random_device random;
    folder = std::filesystem::temp_directory_path() /
             ("localmapi-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(folder);
    // One transaction: each statement of its own would wait for the disk.
    Query(Path(), std::string("BEGIN;") + localStoreSql + "COMMIT;");
}

TemporaryStore::~TemporaryStore()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string TemporaryStore::Path() const
{
    const std::u8string path = (folder / "store.db").u8string();
    return {path.begin(), path.end()};
}

void TemporaryStore::Run(const std::string& sql) const
{
    Query(Path(), sql);
}

std::int64_t TemporaryStore::ReadInteger(const std::string& sql) const
{
    return std::stoll(Query(Path(), sql).at(0));
}

std::int64_t TemporaryStore::AddMessage(std::int64_t folderId, const std::string& subject) const
{
    MessageChanges changes;
    changes.properties[tag::subject] = subject;
    const auto file = Open();
    return CreateMessage(*file, folderId, changes);
}

std::vector<StoredValue> ReadValues(MessageDraft& draft, const std::vector<std::uint32_t>& tags)
{
    std::vector<StoredValue> values(tags.size());
    draft.Read(tags, [&](std::size_t place, const StoredValue& value) { values[place] = value; });
    return values;
}

std::vector<std::string> ReadLines(const TemporaryStore& store, const std::string& sql)
{
    return Query(store.Path(), sql);
}
