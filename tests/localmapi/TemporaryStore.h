#pragma once

#include "localmapi/storage/MessageDraft.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// A fresh mail store in a folder of its own, which goes away with it.
class TemporaryStore
{
public:
    TemporaryStore();
    TemporaryStore(const TemporaryStore&) = delete;
    TemporaryStore& operator=(const TemporaryStore&) = delete;
    ~TemporaryStore();

    std::string Path() const;    // UTF-8
    std::filesystem::path Folder() const { return folder; }
    std::shared_ptr<StoreFile> Open() const { return StoreFile::Open(Path()); }

    // Runs SQL on the file, beside whoever has it open.
    void Run(const std::string& sql) const;
    std::int64_t ReadInteger(const std::string& sql) const;

    // A message with that subject; yields its id.
    std::int64_t AddMessage(std::int64_t folderId, const std::string& subject) const;

private:
    std::filesystem::path folder;
};

// The properties' values, in the tags' order.
std::vector<StoredValue> ReadValues(MessageDraft& draft, const std::vector<std::uint32_t>& tags);

// The first column of what a query yields, one line a row.
std::vector<std::string> ReadLines(const TemporaryStore& store, const std::string& sql);
