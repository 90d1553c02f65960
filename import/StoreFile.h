#pragma once

#include "import/Database.h"

#include <filesystem>
#include <memory>

// The store that an import fills: all of it at Commit, or nothing. A store that is not there yet is made
// beside its place and takes its name only when it is whole; one that is there is changed in a single
// transaction. Unless Commit was reached, the destructor leaves everything as it was.
class StoreFile
{
public:
    virtual ~StoreFile() = default;

    virtual Database& GetDatabase() = 0;

    // Makes the import last, on disk as well. Statements of the database must be gone by now.
    virtual void Commit() = 0;
};

// Throws ImportError unless a store can be made at `path` or the file there is a mail store of this format.
void CheckStorePath(const std::filesystem::path& path);

// Throws ImportError when the store cannot be made or opened, or is in use.
std::unique_ptr<StoreFile> OpenStore(const std::filesystem::path& path);
