#pragma once

#include "localmapi/storage/Database.h"
#include "localmapi/storage/ReadAhead.h"
#include "localmapi/storage/ReadHolder.h"
#include "localmapi/storage/StoredValue.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>

// An open mail store file. May be used on any thread: whoever works with its database holds it by Use().
class StoreFile
{
public:
    // `path` is UTF-8. Throws StoreError when there is no such file or it is no mail store of this version.
    // Never creates a file.
    static std::shared_ptr<StoreFile> Open(const std::string& path);

    explicit StoreFile(const std::string& path);
    ~StoreFile();

    // The database, for the holder's thread alone while the pair lives.
    class Lease
    {
    public:
        explicit Lease(StoreFile& file);
        Database* operator->() const { return &file.database; }
        Database& operator*() const { return file.database; }
        ReadAhead& Messages() const { return file.readAhead; }

    private:
        StoreFile& file;
        std::unique_lock<std::mutex> lock;
    };
    Lease Use() { return Lease(*this); }

    StoredValue ReadSetting(const std::string& name);
    Blob ReadUid();    // the 16 bytes that stand in every entry id of this store

private:
    std::mutex mutex;    // guards what follows, for the lease's holder
    Database database;
    ReadAhead readAhead;
    ReadHolder readHolder;
};

// Now as FILETIME: 100 ns since 1601-01-01 UTC.
std::int64_t CurrentFileTime();
