#pragma once

#include "localmapi/storage/Database.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

// A message as one statement read it.
struct MessageRecord
{
    std::vector<StoredValue>
        values;    // of MessageColumns(), without the long texts where they were not read

    bool HasTexts() const;
    const StoredValue* Find(std::uint32_t tag) const;    // null for what was not read
    std::int64_t Id() const;
    std::int64_t FolderId() const;
};
using SharedRecord = std::shared_ptr<const MessageRecord>;

// Reads messages that are opened. Who opens a folder's messages one after the other, in the order of their
// ids, gets most of them out of batches that were read ahead, with their long texts; batches grow while they
// are used up. Some such walks may go on at once, with other messages opened in between. Nothing that was
// read outlives a change of the file.
//
// Used with the database, by one thread at a time. Throws StoreError.
class ReadAhead
{
public:
    // The message; null when there is none of that id.
    SharedRecord Read(Database& database, std::int64_t id);

private:
    // What was read last for one walk.
    struct Walk
    {
        std::vector<SharedRecord> batch;    // of one folder, ascending
        std::size_t used = 0;               // of the batch
        std::uint64_t lastUse = 0;
    };

    void ForgetWhatHasChanged(Database& database);
    SharedRecord Take(std::int64_t id);
    Walk* FindWalkTo(Database& database, std::int64_t id);
    SharedRecord ReadOn(Database& database, Walk& walk, std::int64_t id);
    SharedRecord StartWalk(SharedRecord record);

    std::array<Walk, 3> walks;
    std::optional<ChangeStamp> stamp;    // of the file when the walks' batches were read
    std::uint64_t uses = 0;
};
