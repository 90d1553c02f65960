#include "import/MailConverter.h"

#include "import/MailHeaders.h"
#include "import/MimeContent.h"
#include "import/PlainMail.h"
#include "import/Text.h"

#include <gmime/gmime.h>

#include <algorithm>

namespace
{
namespace tag
{
constexpr uint32_t sensitivity = 0x00360003;
constexpr uint32_t messageStatus = 0x0E170003;
constexpr uint32_t html = 0x10130102;
constexpr uint32_t internetMessageId = 0x1035001F;
constexpr uint32_t internetReferences = 0x1039001F;
constexpr uint32_t inReplyToId = 0x1042001F;
constexpr uint32_t lastVerbExecuted = 0x10810003;
constexpr uint32_t internetCodepage = 0x3FDE0003;
}    // namespace tag

constexpr int64_t messageRead = 0x01;
constexpr int64_t messageUnsent = 0x08;
constexpr int64_t messageHasAttach = 0x10;
constexpr int64_t statusMarkedForDeletion = 0x08;
constexpr int64_t verbReply = 102;
constexpr int64_t verbForward = 104;
constexpr int64_t codepageUtf8 = 65001;
constexpr int flagStatusFlagged = 2;

enum RecipientType
{
    recipientTo = 1,
    recipientCc = 2,
    recipientBcc = 3
};

// The flags that an mbox keeps in two fields of each message.
MailFlags WithStatusHeaders(MailFlags flags, const MailHeaders& headers)
{
    const auto holds = [](std::string_view letters, char letter)
    { return letters.find(letter) != std::string_view::npos; };
    const std::string_view status = headers.First("status");
    const std::string_view more = headers.First("x-status");
    flags.read |= holds(status, 'R');
    flags.replied |= holds(more, 'A');
    flags.flagged |= holds(more, 'F');
    flags.draft |= holds(more, 'T');
    flags.trashed |= holds(more, 'D');
    return flags;
}

// The priority that the sender asked for, in whichever of the usual fields.
int ImportanceOf(const MailHeaders& headers)
{
    const std::string importance = AsciiLower(headers.First("importance"));
    const std::string priority = AsciiLower(headers.First("priority"));
    const std::string_view level = headers.First("x-priority");
    if (importance == "high" || priority == "urgent" || level.starts_with('1') || level.starts_with('2'))
        return 2;
    if (importance == "low" || priority == "non-urgent" || level.starts_with('4') || level.starts_with('5'))
        return 0;
    return 1;
}

int64_t SensitivityOf(const MailHeaders& headers)
{
    const std::string value = AsciiLower(headers.First("sensitivity"));
    if (value == "personal")
        return 1;
    if (value == "private")
        return 2;
    return value == "company-confidential" ? 3 : 0;
}

std::optional<FileTime> NewestReceivedTime(const MailHeaders& headers)
{
    // Each host writes its field above those it found: the first readable one is the newest.
    for (const HeaderField& field : headers.Fields())
    {
        const size_t semicolon = field.name == "received" ? field.value.rfind(';') : std::string::npos;
        if (semicolon == std::string::npos)
            continue;
        if (const std::optional<FileTime> time =
                ParseMailDate(std::string_view(field.value).substr(semicolon + 1)))
            return time;
    }
    return std::nullopt;
}

void ReadSender(const MailHeaders& headers, MailRecord& record)
{
    for (const std::string_view field : {"from", "sender"})
    {
        const std::vector<MailAddress> addresses = headers.Addresses(field);
        if (addresses.empty())
            continue;
        record.senderName = addresses.front().name;
        record.senderAddress = addresses.front().address;
        return;
    }
}

void ReadRecipients(const MailHeaders& headers, std::string_view field, int type, MailRecord& record)
{
    for (MailAddress& address : headers.Addresses(field))
        record.recipients.push_back({type, std::move(address.name), std::move(address.address)});
}

void AddText(MailRecord& record, uint32_t propertyTag, std::string_view text)
{
    if (!text.empty())
        record.properties.push_back({propertyTag, 0, std::string(text)});
}

void AddNumber(MailRecord& record, uint32_t propertyTag, int64_t number)
{
    if (number != 0)
        record.properties.push_back({propertyTag, number, {}});
}

void ReadTimes(const RawMail& mail, const MailHeaders& headers, MailRecord& record)
{
    record.submitTime = ParseMailDate(headers.First("date"));
    record.deliveryTime = NewestReceivedTime(headers);
    for (const std::optional<FileTime>& time : {mail.envelopeTime, mail.fileTime, record.submitTime})
        if (!record.deliveryTime)
            record.deliveryTime = time;
}

void ReadHeaders(const RawMail& mail, const MailHeaders& headers, MailRecord& record)
{
    record.subject = headers.Text("subject");
    ReadSender(headers, record);
    ReadRecipients(headers, "to", recipientTo, record);
    ReadRecipients(headers, "cc", recipientCc, record);
    ReadRecipients(headers, "bcc", recipientBcc, record);
    ReadTimes(mail, headers, record);
    record.importance = ImportanceOf(headers);
    AddText(record, tag::internetMessageId, headers.First("message-id"));
    AddText(record, tag::inReplyToId, headers.First("in-reply-to"));
    AddText(record, tag::internetReferences, headers.First("references"));
    AddNumber(record, tag::sensitivity, SensitivityOf(headers));
}

void ApplyFlags(const MailFlags& flags, const MailHeaders& headers, MailRecord& record)
{
    if (flags.read)
        record.flags |= messageRead;
    if (flags.draft || headers.First("x-unsent") == "1")
        record.flags |= messageUnsent;
    if (flags.flagged)
        record.flagStatus = flagStatusFlagged;
    // Marked, not moved: the owner of the mailbox has not emptied it yet.
    AddNumber(record, tag::messageStatus, flags.trashed ? statusMarkedForDeletion : 0);
    AddNumber(record, tag::lastVerbExecuted, flags.replied ? verbReply : flags.passed ? verbForward : 0);
}

void ApplyContent(MimeContent content, MailRecord& record)
{
    record.body = std::move(content.body);
    record.messageClass = std::move(content.messageClass);
    record.attachments = std::move(content.attachments);
    if (!record.attachments.empty())
        record.flags |= messageHasAttach;
    if (content.html.empty())
        return;
    record.properties.push_back({tag::html, 0, std::move(content.html)});
    AddNumber(record, tag::internetCodepage, codepageUtf8);
}

MimeContent ReadContent(std::string_view bytes, const HeaderBlock& block, const MailHeaders& headers)
{
    size_t bodyBegin = block.end;
    for (const std::string_view emptyLine : {"\r\n", "\n"})
        if (block.end > block.begin && bytes.substr(block.end).starts_with(emptyLine))
        {
            bodyBegin += emptyLine.size();
            break;
        }
    const std::string_view body = bytes.substr(bodyBegin);
    MimeContent content;
    if (block.end == block.begin)
        content.body = WithCrLf(GuessUtf8(body));
    else if (auto plain = ReadPlainMail(bytes.substr(block.begin, bodyBegin - block.begin), headers, body))
        content = std::move(*plain);
    else
        content = ReadMimeContent(bytes.substr(block.begin), body);
    return content;
}
}    // namespace

MimeLibrary::MimeLibrary()
{
    g_mime_init();
}

MimeLibrary::~MimeLibrary()
{
    g_mime_shutdown();
}

MailRecord ConvertMail(const RawMail& mail)
{
    const std::string_view bytes = mail.bytes;
    const HeaderBlock block = FindHeaderBlock(bytes);
    const std::string headerText = HeaderTextAsUtf8(bytes.substr(block.begin, block.end - block.begin));
    const MailHeaders headers(headerText);
    MailRecord record;
    record.size = static_cast<int64_t>(bytes.size());
    record.headers = WithCrLf(headerText);
    ReadHeaders(mail, headers, record);
    ApplyContent(ReadContent(bytes, block, headers), record);
    ApplyFlags(mail.hasStatusHeaders ? WithStatusHeaders(mail.flags, headers) : mail.flags, headers, record);
    return record;
}
