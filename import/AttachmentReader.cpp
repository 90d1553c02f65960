#include "import/AttachmentReader.h"

#include "import/GlibOwners.h"
#include "import/MailHeaders.h"
#include "import/Text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace
{
constexpr int attachByValue = 1;
constexpr int attachEmbeddedMessage = 5;

std::string TextOrEmpty(const char* text)
{
    return text ? RepairUtf8(text) : std::string();
}

std::string TakeBytes(GMimeStream* memory)
{
    const GByteArray* const bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(memory));
    return bytes->len ? std::string(reinterpret_cast<const char*>(bytes->data), bytes->len) : std::string();
}

std::string WrittenForm(GMimeObject* object)
{
    const GlibObject<GMimeStream> memory(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(object, nullptr, memory.get());
    return TakeBytes(memory.get());
}

std::string MimeTag(GMimeObject* object)
{
    const GlibText tag(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(object)));
    return AsciiLower(TextOrEmpty(tag.get()));
}

// A name in a mail may be a whole path of the system it comes from, or hold line ends.
std::string PlainFileName(std::string name)
{
    const size_t separator = name.find_last_of("/\\");
    if (separator != std::string::npos)
        name.erase(0, separator + 1);
    std::erase_if(name, [](unsigned char character) { return character < ' ' || character == 0x7F; });
    const std::string_view plain = Trimmed(name);
    // The folder itself and the one above it are no files.
    return plain == "." || plain == ".." ? std::string() : std::string(plain);
}

std::string GivenFileName(GMimeObject* object)
{
    const GMimeContentDisposition* const disposition = g_mime_object_get_content_disposition(object);
    const char* name =
        disposition ? g_mime_object_get_content_disposition_parameter(object, "filename") : nullptr;
    if (!name)
        name = g_mime_object_get_content_type_parameter(object, "name");
    // Many mailers write RFC 2047 words where RFC 2231 is meant.
    return name ? PlainFileName(DecodeWords(GuessUtf8(name))) : std::string();
}

std::string_view UsualExtension(const std::string& mimeTag)
{
    struct Extension
    {
        std::string_view type;
        std::string_view extension;
    };
    constexpr Extension extensions[] = {
        {"text/plain", ".txt"},         {"text/html", ".htm"},      {"text/calendar", ".ics"},
        {"text/x-vcard", ".vcf"},       {"text/vcard", ".vcf"},     {"text/csv", ".csv"},
        {"image/jpeg", ".jpg"},         {"image/gif", ".gif"},      {"image/png", ".png"},
        {"image/bmp", ".bmp"},          {"image/tiff", ".tif"},     {"application/pdf", ".pdf"},
        {"audio/mpeg", ".mp3"},         {"audio/x-wav", ".wav"},    {"application/pgp-signature", ".asc"},
        {"application/zip", ".zip"},    {"message/rfc822", ".eml"}, {"message/delivery-status", ".txt"},
        {"text/rfc822-headers", ".txt"}};
    const auto* const found = std::ranges::find(extensions, std::string_view(mimeTag), &Extension::type);
    return found != std::end(extensions) ? found->extension : ".dat";
}

std::string NumberedFileName(size_t ordinal, const std::string& mimeTag)
{
    char name[32];
    std::snprintf(name, sizeof name, "ATT%05zu", ordinal);
    return name + std::string(UsualExtension(mimeTag));
}

std::string FileNameOfSubject(std::string subject)
{
    for (char& character : subject)
        if (static_cast<unsigned char>(character) < ' ' ||
            std::string_view("/\\:*?\"<>|").find(character) != std::string_view::npos)
            character = '_';
    return subject + ".eml";
}

std::string SubjectOf(std::string_view mail)
{
    const HeaderBlock block = FindHeaderBlock(mail);
    return MailHeaders(HeaderTextAsUtf8(mail.substr(block.begin, block.end - block.begin))).Text("subject");
}

bool IsEmbeddedMessage(GMimeObject* object)
{
    GMimeContentType* const type = g_mime_object_get_content_type(object);
    return GMIME_IS_MESSAGE_PART(object) || g_mime_content_type_is_type(type, "message", "rfc822");
}

std::string EmbeddedBytes(GMimeObject* object)
{
    if (!GMIME_IS_MESSAGE_PART(object))
        return DecodedContent(GMIME_PART(object));
    GMimeMessage* const inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
    return inner ? WrittenForm(GMIME_OBJECT(inner)) : std::string();
}

void NameEmbeddedMessage(AttachmentRecord& attachment, size_t ordinal)
{
    const std::string subject = SubjectOf(attachment.data);
    if (attachment.fileName.empty())
        attachment.fileName =
            subject.empty() ? NumberedFileName(ordinal, "message/rfc822") : FileNameOfSubject(subject);
    attachment.displayName = subject.empty() ? attachment.fileName : subject;
}
}    // namespace

std::string DecodedContent(GMimePart* part)
{
    GMimeDataWrapper* const content = g_mime_part_get_content(part);
    if (!content)
        return {};
    const GlibObject<GMimeStream> memory(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, memory.get());
    return TakeBytes(memory.get());
}

AttachmentRecord ReadAttachment(GMimeObject* object, size_t ordinal)
{
    AttachmentRecord attachment;
    attachment.mimeTag = MimeTag(object);
    attachment.contentId = TextOrEmpty(g_mime_object_get_content_id(object));
    attachment.fileName = GivenFileName(object);
    if (IsEmbeddedMessage(object))
    {
        attachment.method = attachEmbeddedMessage;
        attachment.data = EmbeddedBytes(object);
        NameEmbeddedMessage(attachment, ordinal);
        return attachment;
    }
    attachment.method = attachByValue;
    attachment.data = GMIME_IS_PART(object) ? DecodedContent(GMIME_PART(object)) : WrittenForm(object);
    if (attachment.fileName.empty())
        attachment.fileName = NumberedFileName(ordinal, attachment.mimeTag);
    attachment.displayName = attachment.fileName;
    return attachment;
}
