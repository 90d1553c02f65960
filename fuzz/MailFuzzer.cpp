// One mail, converted as the importer does it: whatever its bytes, the record is one that a store can keep.
#include "fuzz/FuzzTarget.h"
#include "fuzz/Requirement.h"
#include "import/MailConverter.h"
#include "import/Text.h"

#include <algorithm>

namespace
{
constexpr std::uint32_t typeUnicode = 0x001F;

bool HasPlainLineEnds(std::string_view text)
{
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const bool ends = text[index] == '\n';
        const bool begins = text[index] == '\r';
        if (ends && (index == 0 || text[index - 1] != '\r'))
            return false;
        if (begins && (index + 1 == text.size() || text[index + 1] != '\n'))
            return false;
    }
    return true;
}

void RequireText(std::string_view text)
{
    Require(IsCleanUtf8(text), "text is UTF-8 without NUL");
}

// It may become the name of a file one day.
void RequireFileName(std::string_view name)
{
    RequireText(name);
    Require(name.find_first_of("/\\") == std::string_view::npos, "a file name names no folder");
    Require(std::ranges::none_of(name, [](unsigned char c) { return c < ' ' || c == 0x7F; }),
            "a file name holds no control characters");
    Require(name != "." && name != "..", "a file name names a file");
}

void RequireAttachment(const AttachmentRecord& attachment)
{
    RequireFileName(attachment.fileName);
    Require(!attachment.fileName.empty(), "an attachment has a file name");
    for (const std::string* text : {&attachment.displayName, &attachment.mimeTag, &attachment.contentId})
        RequireText(*text);
}

void RequireRecord(const MailRecord& record)
{
    for (const std::string* text : {&record.messageClass, &record.subject, &record.senderName,
                                    &record.senderAddress, &record.headers, &record.body})
        RequireText(*text);
    Require(HasPlainLineEnds(record.headers), "the headers' lines end with CR LF");
    Require(HasPlainLineEnds(record.body), "the body's lines end with CR LF");
    for (const RecipientRecord& recipient : record.recipients)
    {
        RequireText(recipient.name);
        RequireText(recipient.address);
        Require(!recipient.name.empty(), "a recipient has a name");
        Require(recipient.type >= 1 && recipient.type <= 3, "a recipient is of a type");
    }
    for (const PropertyRecord& property : record.properties)
        if ((property.tag & 0xFFFF) == typeUnicode)
            RequireText(property.bytes);
    std::ranges::for_each(record.attachments, RequireAttachment);
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MimeLibrary library;
    RawMail mail;
    mail.bytes = TextOf(data, size);
    mail.hasStatusHeaders = true;
    RequireRecord(ConvertMail(mail));
    return 0;
}
