#include "import/sample/SampleWriter.h"

#include "import/ImportError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string_view>

namespace
{
namespace fs = std::filesystem;

void WriteFile(const fs::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    if (!file)
        throw SystemFailure("write", path.string(), errno);
}

void MakeDirectory(const fs::path& path)
{
    std::error_code error;
    fs::create_directories(path, error);
    if (error)
        throw SystemFailure("make", path.string(), error.value());
}

std::string Numbered(const char* format, size_t number)
{
    char text[64];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

// "Inbox/Lists/Build" is the sub-folder ".Lists.Build" of the Maildir Inbox.
fs::path MaildirPath(const fs::path& directory, const std::string& folder)
{
    const size_t slash = folder.find('/');
    if (slash == std::string::npos)
        return directory / folder;
    std::string subfolder = "." + folder.substr(slash + 1);
    std::ranges::replace(subfolder, '/', '.');
    return directory / folder.substr(0, slash) / subfolder;
}

std::string_view MaildirFlags(size_t number)
{
    constexpr std::string_view flags[] = {"S", "S", "S", "RS", "S", "FS", "S", "PS", "", "S"};
    return flags[number % std::size(flags)];
}

void WriteMaildir(const SampleFolder& folder, const fs::path& maildir)
{
    for (const char* const part : {"cur", "new", "tmp"})
        MakeDirectory(maildir / part);
    size_t number = 0;
    for (const SampleMail& mail : folder.mails)
    {
        ++number;
        const std::string name = std::to_string(mail.sentAt + 4) + Numbered(".M%06zuP1.sample", number);
        // What nobody has looked at yet lies in new.
        const bool isNew = number % 25 == 0;
        WriteFile(isNew ? maildir / "new" / name
                        : maildir / "cur" / (name + ":2," + std::string(MaildirFlags(number))),
                  WriteSampleMail(mail));
    }
}

std::string SeparatorLine(const SampleMail& mail)
{
    const std::time_t time = static_cast<std::time_t>(mail.sentAt);
    std::tm parts = {};
    gmtime_r(&time, &parts);
    char date[64];
    std::strftime(date, sizeof date, "%a %b %e %H:%M:%S %Y", &parts);
    return "From " + mail.from.address + " " + date + "\n";
}

// mboxrd: one more '>' before every line that a reader could take for a separator, or for a quoted one.
std::string QuotedForMbox(const std::string& bytes)
{
    std::string quoted;
    for (size_t at = 0; at < bytes.size();)
    {
        const size_t end = std::min(bytes.find('\n', at), bytes.size() - 1) + 1;
        const std::string_view line = std::string_view(bytes).substr(at, end - at);
        const size_t quotes = std::min(line.find_first_not_of('>'), line.size());
        if (line.substr(quotes).starts_with("From "))
            quoted += '>';
        quoted += line;
        at = end;
    }
    return quoted;
}

void WriteMbox(const SampleFolder& folder, const fs::path& path)
{
    std::string bytes;
    for (const SampleMail& mail : folder.mails)
        bytes += SeparatorLine(mail) + QuotedForMbox(WriteSampleMail(mail)) + "\n";
    MakeDirectory(path.parent_path());
    WriteFile(path, bytes);
}

void WriteMessageFiles(const SampleFolder& folder, const fs::path& directory)
{
    MakeDirectory(directory);
    size_t number = 0;
    for (const SampleMail& mail : folder.mails)
        WriteFile(directory / Numbered("%04zu.eml", ++number), WriteSampleMail(mail));
}
}    // namespace

void WriteSampleMailbox(const SampleMailbox& mailbox, const fs::path& directory)
{
    MakeDirectory(directory);
    std::error_code error;
    if (!fs::is_empty(directory, error) || error)
        throw ImportError(directory.string() + " is not empty");
    for (const SampleFolder& folder : mailbox.folders)
    {
        if (folder.form == SampleForm::maildir)
            WriteMaildir(folder, MaildirPath(directory, folder.path));
        else if (folder.form == SampleForm::mbox)
            WriteMbox(folder, directory / (folder.path + ".mbox"));
        else
            WriteMessageFiles(folder, directory / folder.path);
    }
}
