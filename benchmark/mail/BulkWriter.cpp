#include "benchmark/mail/BulkWriter.h"

#include "import/ImportError.h"
#include "import/MailConverter.h"
#include "import/MailPipeline.h"
#include "import/StoreFile.h"
#include "import/StoreWriter.h"

#include <cerrno>
#include <ctime>
#include <fstream>
#include <string>

namespace
{
namespace fs = std::filesystem;

std::string SeparatorLine(const SampleMail& mail)
{
    const std::time_t time = static_cast<std::time_t>(mail.sentAt);
    std::tm parts = {};
    gmtime_r(&time, &parts);
    char date[64];
    std::strftime(date, sizeof date, "%a %b %e %H:%M:%S %Y", &parts);
    return "From " + mail.from.address + " " + date + "\n";
}

// A text of these messages may begin a line with the word that separates messages.
std::string QuotedForMbox(std::string bytes)
{
    for (std::size_t at = bytes.find("\nFrom "); at != std::string::npos; at = bytes.find("\nFrom ", at + 2))
        if (at > bytes.find("\n\n"))
            bytes.insert(at + 1, 1, '>');
    return bytes;
}

void CloseOrThrow(std::ofstream& file, const fs::path& path)
{
    file.close();
    if (!file)
        throw SystemFailure("write", path.string(), errno);
}
}    // namespace

void WriteBulkMbox(const BulkMailbox& mailbox, const fs::path& target)
{
    std::ofstream file(target, std::ios::binary);
    for (std::size_t index = 0; index < mailbox.Size(); ++index)
    {
        const SampleMail mail = mailbox.Mail(index);
        file << SeparatorLine(mail) << QuotedForMbox(WriteSampleMail(mail)) << '\n';
    }
    CloseOrThrow(file, target);
}

void WriteBulkMaildir(const BulkMailbox& mailbox, const fs::path& target)
{
    for (const char* const part : {"cur", "new", "tmp"})
        fs::create_directories(target / part);
    for (std::size_t index = 0; index < mailbox.Size(); ++index)
    {
        const SampleMail mail = mailbox.Mail(index);
        const fs::path path = target / "cur" / (std::to_string(1'700'000'000 + index) + ".M1P1.bulk:2,S");
        std::ofstream file(path, std::ios::binary);
        file << WriteSampleMail(mail);
        CloseOrThrow(file, path);
    }
}

void WriteBulkStore(const BulkMailbox& mailbox, std::size_t folders, const fs::path& target)
{
    const MimeLibrary library;
    const std::unique_ptr<StoreFile> file = OpenStore(target);
    {
        StoreWriter writer(file->GetDatabase());
        const MailPipeline::Progress nobody = [](const ImportCounts&) {};
        MailPipeline pipeline(writer, nobody);
        for (std::size_t folder = 0; folder < folders; ++folder)
        {
            const int64_t id =
                writer.OpenFolder(StoreWriter::topFolderId, "Bulk " + std::to_string(folder + 1));
            const std::size_t end = mailbox.Size() * (folder + 1) / folders;
            for (std::size_t index = mailbox.Size() * folder / folders; index < end; ++index)
            {
                RawMail mail;
                mail.bytes = WriteSampleMail(mailbox.Mail(index));
                mail.flags.read = true;
                pipeline.Add(id, std::move(mail));
            }
        }
        pipeline.Finish();
    }
    file->Commit();
}
