#include "import/MimeContent.h"

#include "import/AttachmentReader.h"
#include "import/GlibOwners.h"
#include "import/HtmlText.h"
#include "import/MailHeaders.h"
#include "import/MessageClass.h"
#include "import/Text.h"

#include <gmime/gmime.h>

#include <algorithm>

namespace
{
// The readable text of one part or of a group of parts, in the two forms it may come in.
struct BodyText
{
    std::string plain;
    std::string html;
    bool hasPlain = false;
    bool hasHtml = false;
};

bool IsBlank(const std::string& text)
{
    return Trimmed(text).empty();
}

std::string PlainForm(const BodyText& text)
{
    return text.hasPlain && !(text.hasHtml && IsBlank(text.plain)) ? text.plain : HtmlToText(text.html);
}

std::string HtmlForm(const BodyText& text)
{
    return text.hasHtml ? text.html : TextToHtml(text.plain);
}

void AppendLines(std::string& text, const std::string& more)
{
    if (!text.empty() && !text.ends_with('\n') && !more.empty())
        text += "\r\n";
    text += more;
}

BodyText JoinInOrder(const std::vector<BodyText>& texts)
{
    BodyText joined;
    for (const BodyText& text : texts)
    {
        joined.hasPlain |= text.hasPlain;
        joined.hasHtml |= text.hasHtml;
    }
    for (const BodyText& text : texts)
    {
        if (!text.hasPlain && !text.hasHtml)
            continue;
        if (joined.hasPlain)
            AppendLines(joined.plain, PlainForm(text));
        if (joined.hasHtml)
            AppendLines(joined.html, HtmlForm(text));
    }
    return joined;
}

// Of several forms of the same text: the first plain one that says something, and the last HTML one (RFC
// 2046 5.1.4: the last is the richest).
BodyText ChooseAlternatives(const std::vector<BodyText>& texts)
{
    BodyText chosen;
    for (const BodyText& text : texts)
    {
        if (text.hasPlain && (!chosen.hasPlain || IsBlank(chosen.plain)))
        {
            chosen.plain = text.plain;
            chosen.hasPlain = true;
        }
        if (text.hasHtml)
        {
            chosen.html = text.html;
            chosen.hasHtml = true;
        }
    }
    return chosen;
}

bool IsMarkedAsAttachment(GMimeObject* part)
{
    const GMimeContentDisposition* const disposition = g_mime_object_get_content_disposition(part);
    const char* const value =
        disposition
            ? g_mime_content_disposition_get_disposition(const_cast<GMimeContentDisposition*>(disposition))
            : nullptr;
    return value && AsciiLower(Trimmed(value)) == "attachment";
}

// A field that says nothing is as none: what it would describe is a text (RFC 2045 5.2).
bool HasEmptyType(GMimeObject* part)
{
    const char* const type = g_mime_object_get_header(part, "Content-Type");
    return type && Trimmed(type).empty();
}

class MimeReader
{
public:
    explicit MimeReader(GMimeObject* top) : top(top) {}

    BodyText Read(GMimeObject* object)
    {
        if (GMIME_IS_MULTIPART(object))
            return ReadMultipart(GMIME_MULTIPART(object));
        if (GMIME_IS_PART(object) && IsBodyText(object))
            return ReadText(GMIME_PART(object));
        attachments.push_back(ReadAttachment(object, attachments.size() + 1));
        return {};
    }

    std::vector<AttachmentRecord> attachments;

private:
    BodyText ReadMultipart(GMimeMultipart* multipart)
    {
        std::vector<BodyText> texts;
        const int count = g_mime_multipart_get_count(multipart);
        for (int index = 0; index < count; ++index)
            texts.push_back(Read(g_mime_multipart_get_part(multipart, index)));
        GMimeContentType* const type = g_mime_object_get_content_type(GMIME_OBJECT(multipart));
        return g_mime_content_type_is_type(type, "multipart", "alternative") ? ChooseAlternatives(texts)
                                                                             : JoinInOrder(texts);
    }

    bool IsBodyText(GMimeObject* part) const
    {
        GMimeContentType* const type = g_mime_object_get_content_type(part);
        const bool readable = HasEmptyType(part) || g_mime_content_type_is_type(type, "text", "plain") ||
                              g_mime_content_type_is_type(type, "text", "html") ||
                              (part == top && g_mime_content_type_is_type(type, "text", "*"));
        if (!readable || IsMarkedAsAttachment(part))
            return false;
        // A mail that is one text is its body, whatever name that text carries.
        return part == top || g_mime_part_get_filename(GMIME_PART(part)) == nullptr;
    }

    static BodyText ReadText(GMimePart* part)
    {
        const std::string bytes = DecodedContent(part);
        const bool isHtml =
            g_mime_content_type_is_type(g_mime_object_get_content_type(GMIME_OBJECT(part)), "text", "html");
        const char* const named = g_mime_object_get_content_type_parameter(GMIME_OBJECT(part), "charset");
        const std::string charset = named ? named : (isHtml ? HtmlCharset(bytes) : std::string());
        const std::string text = WithCrLf(DecodeCharset(bytes, charset));
        return isHtml ? BodyText{{}, text, false, true} : BodyText{text, {}, true, false};
    }

    GMimeObject* top;
};

GlibObject<GMimeMessage> ParseMessage(std::string_view bytes)
{
    std::string readable(bytes);
    LimitGroups(readable);
    // The stream keeps a copy of the bytes; the message's parts hold references to the stream.
    const GlibObject<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(readable.data(), readable.size()));
    const GlibObject<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return GlibObject<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr));
}
}    // namespace

MimeContent ReadMimeContent(std::string_view mail, std::string_view body)
{
    MimeContent content;
    const GlibObject<GMimeMessage> message = ParseMessage(mail);
    GMimeObject* const top = message ? g_mime_message_get_mime_part(message.get()) : nullptr;
    const bool readable =
        top && !(GMIME_IS_MULTIPART(top) && g_mime_multipart_get_count(GMIME_MULTIPART(top)) == 0);
    if (!readable)
    {
        content.body = WithCrLf(GuessUtf8(body));
        return content;
    }
    MimeReader reader(top);
    const BodyText text = reader.Read(top);
    content.body = PlainForm(text);
    content.html = text.html;
    content.messageClass = MessageClassOf(top);
    content.attachments = std::move(reader.attachments);
    return content;
}
