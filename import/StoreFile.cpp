#include "import/StoreFile.h"

#include "contracts/LocalStoreSchema.h"
#include "import/ImportError.h"

#include <cerrno>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr int64_t storeApplicationId = 0x544D5153;
constexpr int64_t storeVersion = 1;

fs::path DirectoryOf(const fs::path& path)
{
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

void SyncToDisk(const fs::path& path, int flags)
{
    const int descriptor = open(path.c_str(), flags | O_RDONLY | O_CLOEXEC);
    const int result = descriptor < 0 ? -1 : fsync(descriptor);
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    // Some file systems cannot sync a directory and need not.
    if (result != 0 && !(error == EINVAL && (flags & O_DIRECTORY)))
        throw SystemFailure("write", path.string(), error);
}

// An empty file that is removed again unless it is renamed.
class TemporaryFile
{
public:
    explicit TemporaryFile(const fs::path& beside)
        : path((DirectoryOf(beside) / ("." + beside.filename().string() + ".XXXXXX")).string())
    {
        const int descriptor = mkstemp(path.data());
        if (descriptor < 0)
            throw SystemFailure("write", beside.string(), errno);
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(descriptor, 0666 & ~mask);
        close(descriptor);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (!path.empty())
            unlink(path.c_str());
    }

    const std::string& Path() const { return path; }

    // Never over a file that has come there meanwhile, where the file system can promise that.
    void RenameTo(const fs::path& target)
    {
        int result = renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
        if (result != 0 && (errno == EINVAL || errno == ENOSYS))
            result = rename(path.c_str(), target.c_str());
        if (result != 0)
            throw SystemFailure("write", target.string(), errno);
        path.clear();
    }

private:
    std::string path;
};

class NewStore : public StoreFile
{
public:
    explicit NewStore(const fs::path& path)
        : path(path),
          file(path),
          database(std::in_place, file.Path(), path)
    {
        // Nobody sees this file before it is whole, so it needs no journal. A page holds several usual
        // bodies: on smaller ones each would fill most of a page, or go on in a page of its own.
        database->Execute("PRAGMA page_size = 16384; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; "
                          "PRAGMA locking_mode = EXCLUSIVE;"
                          "PRAGMA cache_size = -65536; PRAGMA temp_store = MEMORY; BEGIN");
        database->Execute(localStoreSql);
    }

    Database& GetDatabase() override { return *database; }

    void Commit() override
    {
        database->Execute("COMMIT");
        database->Close();
        SyncToDisk(file.Path(), 0);
        file.RenameTo(path);
        SyncToDisk(DirectoryOf(path), O_DIRECTORY);
    }

private:
    fs::path path;
    TemporaryFile file;
    std::optional<Database> database;
};

class ExistingStore : public StoreFile
{
public:
    explicit ExistingStore(const fs::path& path) : path(path), database(std::in_place, path)
    {
        database->Execute("PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL; PRAGMA cache_size = -65536;"
                          "BEGIN IMMEDIATE");
    }
    ~ExistingStore() override
    {
        if (database)
            RollBack();
    }

    Database& GetDatabase() override { return *database; }

    void Commit() override
    {
        database->Execute("COMMIT");
        database->Close();
        database.reset();
    }

private:
    // Closing rolls back, but after a failed write it leaves that to whoever opens the file next: better us
    // than somebody who may not write.
    void RollBack() noexcept
    {
        database.reset();
        try
        {
            Database(path).ReadNumber("SELECT count(*) FROM folder");
        }
        catch (const ImportError&)
        {
            // The journal stays, and with it all that is needed to undo the import.
        }
    }

    fs::path path;
    std::optional<Database> database;
};

void CheckIsStore(const fs::path& path)
{
    int64_t applicationId = 0;
    int64_t version = 0;
    try
    {
        Database database(path);
        applicationId = database.ReadNumber("PRAGMA application_id");
        version = database.ReadNumber("PRAGMA user_version");
    }
    catch (const StoreInUse&)
    {
        throw;
    }
    catch (const ImportError& error)
    {
        throw ImportError(path.string() + " is not a mail store: " + error.what());
    }
    if (applicationId != storeApplicationId)
        throw ImportError(path.string() + " is not a mail store; it is left as it is");
    if (version != storeVersion)
        throw ImportError(path.string() + " is a mail store of another version (" + std::to_string(version) +
                          "); it is left as it is");
}
}    // namespace

void CheckStorePath(const fs::path& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0)
    {
        if (!S_ISREG(status.st_mode))
            throw ImportError(path.string() + " is not a file");
        return CheckIsStore(path);
    }
    if (errno != ENOENT)
        throw SystemFailure("write", path.string(), errno);
    const fs::path directory = DirectoryOf(path);
    if (stat(directory.c_str(), &status) != 0)
        throw SystemFailure("write to", directory.string(), errno);
    if (faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        throw SystemFailure("write to", directory.string(), errno);
}

std::unique_ptr<StoreFile> OpenStore(const fs::path& path)
{
    std::error_code error;
    if (!fs::exists(path, error))
        return std::make_unique<NewStore>(path);
    CheckIsStore(path);
    return std::make_unique<ExistingStore>(path);
}
