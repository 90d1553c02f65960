#include "import/MboxReader.h"

#include "import/MailHeaders.h"
#include "import/Text.h"

namespace
{
constexpr std::string_view separatorStart = "From ";

bool IsEmptyLine(std::string_view line)
{
    return line == "\n" || line == "\r\n";
}

std::string_view EnvelopeAddress(std::string_view line)
{
    const std::string_view rest = Trimmed(line.substr(separatorStart.size()));
    return rest.substr(0, rest.find_first_of(" \t"));
}

std::optional<FileTime> EnvelopeTime(std::string_view line)
{
    // A date without a time is no envelope's: texts write such dates.
    if (line.find(':') == std::string_view::npos)
        return std::nullopt;
    return ParseMailDate(line.substr(separatorStart.size()));
}

bool IsAddressAlone(std::string_view line)
{
    const std::string_view address = EnvelopeAddress(line);
    return !address.empty() && address == Trimmed(line.substr(separatorStart.size())) &&
           (address.find('@') != std::string_view::npos || address == "-" || address == "MAILER-DAEMON");
}

bool BeginsHeader(std::string_view line)
{
    return IsHeaderFieldLine(line) || line.starts_with(">From ");
}

bool IsQuotedSeparator(std::string_view line)
{
    const size_t quotes = line.find_first_not_of('>');
    return quotes != std::string_view::npos && quotes > 0 && line.substr(quotes).starts_with(separatorStart);
}

// The empty line in front of the next separator belongs to the mailbox, not to the message.
void DropLastEmptyLine(std::string& bytes)
{
    for (const std::string_view lineEnd : {"\r\n", "\n"})
    {
        if (!bytes.ends_with(lineEnd))
            continue;
        const std::string_view before = std::string_view(bytes).substr(0, bytes.size() - lineEnd.size());
        if (before.ends_with('\n'))
            bytes.resize(before.size());
        return;
    }
}
}    // namespace

bool IsSeparatorLine(std::string_view line)
{
    return line.starts_with(separatorStart) && !IsHeaderFieldLine(line) &&
           (EnvelopeTime(line) || IsAddressAlone(line));
}

MboxReader::MboxReader(const std::filesystem::path& path, SeparatorRule rule) : file(path), rule(rule)
{
    Advance();
    Advance();
}

void MboxReader::Advance()
{
    lineBegin = nextBegin;
    nextBegin = nextEnd;
    ReadNextLine();
}

void MboxReader::ReadNextLine()
{
    for (size_t searched = nextBegin;;)
    {
        const size_t end = bytes.find('\n', searched);
        if (end != std::string::npos)
        {
            nextEnd = end + 1;
            return;
        }
        bytes.erase(0, lineBegin);
        nextBegin -= lineBegin;
        lineBegin = 0;
        searched = bytes.size();
        if (file.ReadMore(bytes))
            continue;
        nextEnd = bytes.size();
        return;
    }
}

bool MboxReader::IsSeparator(bool afterEmptyLine) const
{
    const std::string_view line = Line();
    if (!IsSeparatorLine(line))
        return false;
    const bool beforeHeader = BeginsHeader(NextLine());
    if (rule == SeparatorRule::singleMessage || !EnvelopeTime(line))
        return afterEmptyLine && beforeHeader && (rule == SeparatorRule::mailbox || EnvelopeTime(line));
    return afterEmptyLine || beforeHeader;
}

std::optional<RawMail> MboxReader::Next()
{
    if (Line().empty())
        return std::nullopt;
    RawMail mail;
    mail.hasStatusHeaders = true;
    // A file that has changed since it was looked at may begin with something else.
    if (Line().starts_with(separatorStart))
    {
        mail.envelopeTime = EnvelopeTime(Line());
        Advance();
    }
    bool inBody = false;
    bool afterEmptyLine = false;
    for (std::string_view line = Line(); !line.empty() && !IsSeparator(afterEmptyLine); line = Line())
    {
        afterEmptyLine = IsEmptyLine(line);
        mail.bytes += line.substr(inBody && IsQuotedSeparator(line) ? 1 : 0);
        inBody |= afterEmptyLine;
        Advance();
    }
    DropLastEmptyLine(mail.bytes);
    return mail;
}
