#include "import/MailPipeline.h"

#include "import/Interruption.h"
#include "import/MailConverter.h"

#include <utility>

namespace
{
constexpr size_t batchMessages = 256;
constexpr size_t batchBytes = 4 * 1024 * 1024;
constexpr size_t batchesAhead = 3;
}    // namespace

void MailPipeline::Add(int64_t folderId, RawMail mail)
{
    batch.bytes += mail.bytes.size();
    batch.folderIds.push_back(folderId);
    batch.mails.push_back(std::move(mail));
    if (batch.mails.size() >= batchMessages || batch.bytes >= batchBytes)
        LaunchBatch();
}

ImportCounts MailPipeline::Finish()
{
    LaunchBatch();
    while (!running.empty())
        WriteOldestBatch();
    writer.Finish();
    return counts;
}

MailPipeline::ConvertedBatch MailPipeline::Convert(Batch batch)
{
    ConvertedBatch converted{std::move(batch.folderIds), {}};
    converted.records.reserve(batch.mails.size());
    for (RawMail& mail : batch.mails)
    {
        converted.records.push_back(ConvertMail(mail));
        mail.bytes = {};
    }
    return converted;
}

void MailPipeline::LaunchBatch()
{
    running.push_back(std::async(std::launch::async, Convert, std::exchange(batch, {})));
    if (running.size() >= batchesAhead)
        WriteOldestBatch();
}

void MailPipeline::WriteOldestBatch()
{
    const ConvertedBatch converted = running.front().get();
    running.pop_front();
    for (size_t index = 0; index < converted.records.size(); ++index)
    {
        ThrowIfInterrupted();
        writer.AddMessage(converted.folderIds[index], converted.records[index]);
        ++counts.messages;
    }
    progress(counts);
}
