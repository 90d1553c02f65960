#include "import/Importer.h"

#include "import/InputFile.h"
#include "import/MboxReader.h"

#include <utility>

namespace
{
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
    Importer(StoreWriter& writer, const MailPipeline::Progress& progress)
        : writer(writer),
          pipeline(writer, progress)
    {
    }

    void ImportFolder(const SourceFolder& folder, int64_t parentId)
    {
        const int64_t id = writer.OpenFolder(parentId, folder.name);
        pipeline.CountFolder();
        for (const MailFile& file : folder.files)
            ImportFile(file, id);
        for (const SourceFolder& child : folder.folders)
            ImportFolder(child, id);
    }

    ImportCounts Finish() { return pipeline.Finish(); }

private:
    void ImportFile(const MailFile& file, int64_t folderId)
    {
        if (file.kind == MailFileKind::message)
            return pipeline.Add(folderId, ReadMessageFile(file));
        MboxReader reader(file.path, file.kind == MailFileKind::mbox ? SeparatorRule::mailbox
                                                                     : SeparatorRule::singleMessage);
        while (std::optional<RawMail> mail = reader.Next())
            pipeline.Add(folderId, std::move(*mail));
    }

    StoreWriter& writer;
    MailPipeline pipeline;
};
}    // namespace

ImportCounts ImportPlan(const SourcePlan& plan, StoreWriter& writer, const MailPipeline::Progress& progress)
{
    Importer importer(writer, progress);
    for (const SourceFolder& folder : plan.folders)
        importer.ImportFolder(folder, StoreWriter::topFolderId);
    return importer.Finish();
}
