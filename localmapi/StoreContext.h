#pragma once

#include "localmapi/EntryId.h"
#include "localmapi/storage/StoreFile.h"

#include <memory>
#include <string>

// What all objects of one opened store share. Never changes; may be used on any thread.
struct StoreContext
{
    std::shared_ptr<StoreFile> file;
    StoreUid uid;
    std::string displayName;    // UTF-8
    // Whether contents tables show short-term entry ids, and the long-term ones in a column of their own.
    bool hasShortTermIds = false;

    Blob EntryIdOf(EntryKind kind, std::int64_t id) const { return EncodeEntryId({uid, kind, id}); }
    Blob UidBytes() const { return Blob(uid.begin(), uid.end()); }
};
using SharedStore = std::shared_ptr<const StoreContext>;

// `path` is UTF-8. Throws StoreError as StoreFile::Open does.
SharedStore OpenStoreContext(const std::string& path);
