#include "import/sample/SampleMail.h"

#include "import/GlibOwners.h"
#include "import/ImportError.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace
{
bool IsAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](unsigned char character) { return character < 0x80; });
}

std::string Base64(std::string_view bytes)
{
    const GlibText encoded(g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
    return encoded.get();
}

std::string Base64Lines(std::string_view bytes)
{
    constexpr size_t bytesInLine = 57;
    std::string lines;
    for (size_t at = 0; at < bytes.size(); at += bytesInLine)
        lines += Base64(bytes.substr(at, bytesInLine)) + "\n";
    return lines;
}

std::string QuotedPrintable(std::string_view bytes)
{
    std::string lines;
    size_t column = 0;
    for (size_t index = 0; index < bytes.size(); ++index)
    {
        const unsigned char byte = static_cast<unsigned char>(bytes[index]);
        const bool atLineEnd = index + 1 == bytes.size() || bytes[index + 1] == '\n';
        if (byte != '\n' && column > 70)
        {
            lines += "=\n";
            column = 0;
        }
        if (byte == '=' || byte > 0x7E || (byte == ' ' && atLineEnd))
        {
            char code[4];
            std::snprintf(code, sizeof code, "=%02X", byte);
            lines += code;
            column += 3;
            continue;
        }
        lines += static_cast<char>(byte);
        column = byte == '\n' ? 0 : column + 1;
    }
    return lines;
}

std::string ToCharset(const std::string& text, const std::string& charset)
{
    if (charset == "us-ascii" || charset == "utf-8")
        return text;
    gsize length = 0;
    const GlibText converted(g_convert(text.data(), static_cast<gssize>(text.size()), charset.c_str(),
                                       "UTF-8", nullptr, &length, nullptr));
    if (!converted)
        throw ImportError("a sample text does not fit into " + charset);
    return std::string(converted.get(), length);
}

std::string Encoded(const std::string& bytes, const std::string& transferEncoding)
{
    if (transferEncoding == "base64")
        return Base64Lines(bytes);
    return transferEncoding == "quoted-printable" ? QuotedPrintable(bytes) : bytes;
}

// RFC 2047: a word may have 75 characters, so longer text takes several, parted between characters.
std::string HeaderText(const std::string& text)
{
    if (IsAscii(text))
        return text;
    constexpr size_t bytesInWord = 42;
    std::string words;
    for (size_t at = 0; at < text.size();)
    {
        size_t length = std::min(bytesInWord, text.size() - at);
        while (at + length < text.size() && (text[at + length] & 0xC0) == 0x80)
            --length;
        words += (words.empty() ? "=?utf-8?B?" : "\n =?utf-8?B?") + Base64(text.substr(at, length)) + "?=";
        at += length;
    }
    return words;
}

std::string Mailbox(const SamplePerson& person)
{
    if (person.name.empty())
        return person.address;
    const std::string name = IsAscii(person.name) ? "\"" + person.name + "\"" : HeaderText(person.name);
    return name + " <" + person.address + ">";
}

std::string Mailboxes(const std::vector<SamplePerson>& people)
{
    std::string list;
    for (const SamplePerson& person : people)
        list += (list.empty() ? "" : ",\n ") + Mailbox(person);
    return list;
}

void AddField(std::string& headers, const std::string& name, const std::string& value)
{
    if (!value.empty())
        headers += name + ": " + value + "\n";
}

std::string ReceivedFields(const SampleMail& mail)
{
    std::string fields;
    int64_t age = static_cast<int64_t>(mail.relays.size());
    for (const std::string& host : mail.relays)
        fields += "Received: from " + host + " by mx.example.org with ESMTP;\n\t" +
                  WriteSampleDate(mail.sentAt + age-- * 2, mail.zoneHours) + "\n";
    return fields;
}

std::string References(const SampleMail& mail)
{
    std::string list;
    for (const std::string& id : mail.references)
        list += (list.empty() ? "<" : "\n <") + id + ">";
    return list;
}

std::string Fields(const SampleMail& mail)
{
    std::string headers = ReceivedFields(mail);
    AddField(headers, "From", Mailbox(mail.from));
    AddField(headers, "To", Mailboxes(mail.to));
    AddField(headers, "Cc", Mailboxes(mail.cc));
    AddField(headers, "Subject", HeaderText(mail.subject));
    AddField(headers, "Date", WriteSampleDate(mail.sentAt, mail.zoneHours));
    AddField(headers, "Message-ID", "<" + mail.messageId + ">");
    if (!mail.references.empty())
        AddField(headers, "In-Reply-To", "<" + mail.references.back() + ">");
    AddField(headers, "References", References(mail));
    AddField(headers, "List-Id", mail.listId);
    AddField(headers, "Importance", mail.importance);
    AddField(headers, "MIME-Version", "1.0");
    return headers;
}

struct Entity
{
    std::string fields;    // Content- fields
    std::string body;
};

std::string Whole(const Entity& entity)
{
    return entity.fields + "\n" + entity.body;
}

Entity TextEntity(const SampleMail& mail, const std::string& type, const std::string& text)
{
    return {"Content-Type: " + type + "; charset=" + mail.charset +
                "\nContent-Transfer-Encoding: " + mail.transferEncoding + "\n",
            Encoded(ToCharset(text, mail.charset), mail.transferEncoding)};
}

Entity Multipart(const std::string& subtype, const std::string& boundary, const std::vector<Entity>& parts)
{
    Entity whole{"Content-Type: multipart/" + subtype + "; boundary=\"" + boundary + "\"\n", {}};
    for (const Entity& part : parts)
        whole.body += "--" + boundary + "\n" + Whole(part) + "\n";
    whole.body += "--" + boundary + "--\n";
    return whole;
}

// RFC 2231 for what is not ASCII.
std::string FileNameParameter(const std::string& fileName)
{
    if (IsAscii(fileName))
        return "filename=\"" + fileName + "\"";
    const GlibText escaped(g_uri_escape_string(fileName.c_str(), nullptr, false));
    return "filename*=utf-8''" + std::string(escaped.get());
}

Entity AttachmentEntity(const SampleAttachment& attachment)
{
    return {"Content-Type: " + attachment.mimeType + "\nContent-Disposition: attachment; " +
                FileNameParameter(attachment.fileName) + "\nContent-Transfer-Encoding: base64\n",
            Base64Lines(attachment.data)};
}

Entity BodyEntity(const SampleMail& mail, const std::string& boundary)
{
    if (mail.html.empty() && mail.calendar.empty())
        return TextEntity(mail, "text/plain", mail.text);
    if (mail.text.empty())
        return TextEntity(mail, "text/html", mail.html);
    std::vector<Entity> forms = {TextEntity(mail, "text/plain", mail.text)};
    if (!mail.html.empty())
        forms.push_back(TextEntity(mail, "text/html", mail.html));
    if (!mail.calendar.empty())
        forms.push_back({"Content-Type: text/calendar; method=REQUEST; charset=utf-8\n", mail.calendar});
    return Multipart("alternative", boundary, forms);
}
}    // namespace

std::string WriteSampleDate(int64_t seconds, int zoneHours)
{
    const std::time_t local = static_cast<std::time_t>(seconds + zoneHours * 3600);
    std::tm parts = {};
    gmtime_r(&local, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S", &parts);
    char zone[16];
    std::snprintf(zone, sizeof zone, " %c%02d00", zoneHours < 0 ? '-' : '+', std::abs(zoneHours));
    return std::string(text) + zone;
}

std::string WriteSampleMail(const SampleMail& mail)
{
    // A boundary of the message's own id is the same however often the message is written.
    const std::string boundary = "part." + mail.messageId.substr(0, mail.messageId.find('@'));
    Entity content = BodyEntity(mail, boundary + ".body");
    if (!mail.attachments.empty())
    {
        std::vector<Entity> parts = {content};
        for (const SampleAttachment& attachment : mail.attachments)
            parts.push_back(AttachmentEntity(attachment));
        content = Multipart("mixed", boundary, parts);
    }
    return Fields(mail) + Whole(content);
}
