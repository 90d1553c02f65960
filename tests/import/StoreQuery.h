#pragma once

#include "import/Database.h"

#include <filesystem>
#include <map>
#include <string>

// Reads a finished store with plain SQL.
class StoreQuery
{
public:
    explicit StoreQuery(const std::filesystem::path& path) : database(path) {}

    int64_t Number(const std::string& query) { return database.ReadNumber(query.c_str()); }

    std::string Text(const std::string& query)
    {
        Statement statement(database, query.c_str());
        return statement.NextRow() ? statement.Text(0) : std::string();
    }

    // The messages of every folder that has any, by the folder's path below the top folder.
    std::map<std::string, int64_t> MessagesByFolder()
    {
        Statement statement(
            database, "WITH RECURSIVE place (id, path) AS (SELECT id, name FROM folder WHERE parent_id = 2 "
                      "UNION ALL SELECT f.id, path || '/' || f.name FROM folder f, place p "
                      "WHERE f.parent_id = p.id) SELECT path, count(*) FROM place p, message m "
                      "WHERE m.folder_id = p.id GROUP BY path");
        std::map<std::string, int64_t> counts;
        while (statement.NextRow())
            counts[statement.Text(0)] = statement.Number(1);
        return counts;
    }

private:
    Database database;
};
