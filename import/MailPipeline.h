#pragma once

#include "import/MailRecord.h"
#include "import/RawMail.h"
#include "import/StoreWriter.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <vector>

struct ImportCounts
{
    int64_t messages = 0;
    int64_t folders = 0;    // that the sources came to, empty ones included
};

// Puts mail into a store in the order in which it is handed in: converted, batch by batch, on other threads,
// written on the calling one. What is handed in last is written by Finish alone.
class MailPipeline
{
public:
    using Progress = std::function<void(const ImportCounts&)>;

    // Both must outlive the pipeline. `progress` is called after every batch with what has been written.
    MailPipeline(StoreWriter& writer, const Progress& progress) : writer(writer), progress(progress) {}

    // Throws ImportError when the store refuses a message handed in before.
    void Add(int64_t folderId, RawMail mail);
    void CountFolder() { ++counts.folders; }

    ImportCounts Finish();

private:
    struct Batch
    {
        std::vector<int64_t> folderIds;    // one for each mail
        std::vector<RawMail> mails;
        size_t bytes = 0;
    };

    struct ConvertedBatch
    {
        std::vector<int64_t> folderIds;
        std::vector<MailRecord> records;
    };

    static ConvertedBatch Convert(Batch batch);
    void LaunchBatch();
    void WriteOldestBatch();

    StoreWriter& writer;
    const Progress& progress;
    ImportCounts counts;
    Batch batch;
    std::deque<std::future<ConvertedBatch>> running;    // in the order of the messages
};
