#include "import/Importer.h"

#include "import/InputFile.h"
#include "import/Interruption.h"
#include "import/MailConverter.h"
#include "import/MboxReader.h"

#include <deque>
#include <future>
#include <utility>

namespace
{
constexpr size_t batchMessages = 256;
constexpr size_t batchBytes = 4 * 1024 * 1024;
constexpr size_t batchesAhead = 3;

struct MailBatch
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

ConvertedBatch Convert(MailBatch batch)
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

RawMail ReadMessageFile(const MailFile& file)
{
    RawMail mail;
    mail.bytes = ReadWholeFile(file.path);
    mail.flags = file.flags;
    mail.fileTime = file.time;
    // Some deliveries leave the separator of the mbox they came through.
    const std::string_view firstLine = std::string_view(mail.bytes).substr(0, mail.bytes.find('\n'));
    if (firstLine.size() < mail.bytes.size() && IsSeparatorLine(firstLine))
        mail.bytes.erase(0, firstLine.size() + 1);
    return mail;
}

class Importer
{
public:
    Importer(StoreWriter& writer, const std::function<void(const ImportCounts&)>& progress)
        : writer(writer),
          progress(progress)
    {
    }

    void ImportFolder(const SourceFolder& folder, int64_t parentId)
    {
        const int64_t id = writer.OpenFolder(parentId, folder.name);
        ++counts.folders;
        for (const MailFile& file : folder.files)
            ImportFile(file, id);
        for (const SourceFolder& child : folder.folders)
            ImportFolder(child, id);
    }

    ImportCounts Finish()
    {
        LaunchBatch();
        while (!running.empty())
            WriteOldestBatch();
        writer.Finish();
        return counts;
    }

private:
    void ImportFile(const MailFile& file, int64_t folderId)
    {
        if (file.kind == MailFileKind::message)
            return Add(ReadMessageFile(file), folderId);
        MboxReader reader(file.path, file.kind == MailFileKind::mbox ? SeparatorRule::mailbox
                                                                     : SeparatorRule::singleMessage);
        while (std::optional<RawMail> mail = reader.Next())
            Add(std::move(*mail), folderId);
    }

    void Add(RawMail mail, int64_t folderId)
    {
        batch.bytes += mail.bytes.size();
        batch.folderIds.push_back(folderId);
        batch.mails.push_back(std::move(mail));
        if (batch.mails.size() >= batchMessages || batch.bytes >= batchBytes)
            LaunchBatch();
    }

    void LaunchBatch()
    {
        running.push_back(std::async(std::launch::async, Convert, std::exchange(batch, {})));
        if (running.size() >= batchesAhead)
            WriteOldestBatch();
    }

    void WriteOldestBatch()
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

    StoreWriter& writer;
    const std::function<void(const ImportCounts&)>& progress;
    ImportCounts counts;
    MailBatch batch;
    std::deque<std::future<ConvertedBatch>> running;    // in the order of the messages
};
}    // namespace

ImportCounts ImportPlan(const SourcePlan& plan, StoreWriter& writer,
                        const std::function<void(const ImportCounts&)>& progress)
{
    Importer importer(writer, progress);
    for (const SourceFolder& folder : plan.folders)
        importer.ImportFolder(folder, StoreWriter::topFolderId);
    return importer.Finish();
}
