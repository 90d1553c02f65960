#include "import/MailHeaders.h"

#include "import/GlibOwners.h"
#include "import/Text.h"

#include <gmime/gmime.h>

#include <algorithm>

namespace
{
bool IsContinuation(std::string_view line)
{
    return line.starts_with(' ') || line.starts_with('\t');
}

// With its line end; empty when the text is.
std::string_view FirstLine(std::string_view text)
{
    const size_t end = text.find('\n');
    return end == std::string_view::npos ? text : text.substr(0, end + 1);
}

std::string_view WithoutLineEnd(std::string_view line)
{
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

bool IsAddressFieldLine(std::string_view line)
{
    constexpr std::string_view names[] = {"from", "sender", "reply-to", "to", "cc", "bcc"};
    const std::string_view name = line.substr(0, std::min(line.find(':'), line.size()));
    return IsHeaderFieldLine(line) && name.size() < 20 &&
           std::ranges::find(names, AsciiLower(Trimmed(name))) != std::end(names);
}
}    // namespace

bool IsHeaderFieldLine(std::string_view line)
{
    size_t index = 0;
    while (index < line.size() && line[index] > ' ' && line[index] < 0x7F && line[index] != ':')
        ++index;
    const size_t nameLength = index;
    // Old mail has blanks before the colon (RFC 5322 4.5).
    while (index < line.size() && (line[index] == ' ' || line[index] == '\t'))
        ++index;
    return nameLength > 0 && index < line.size() && line[index] == ':';
}

int CountMailFields(std::string_view text)
{
    constexpr std::string_view known[] = {"from",         "date",     "subject",     "to",
                                          "message-id",   "received", "return-path", "mime-version",
                                          "delivered-to", "reply-to", "sender",      "in-reply-to",
                                          "content-type", "x-mailer", "cc"};
    int count = 0;
    while (!text.empty())
    {
        const std::string_view line = FirstLine(text);
        if (WithoutLineEnd(line).empty())
            break;
        const std::string name = AsciiLower(Trimmed(line.substr(0, std::min(line.find(':'), line.size()))));
        count += IsHeaderFieldLine(line) && std::ranges::find(known, name) != std::end(known);
        text.remove_prefix(line.size());
    }
    return count;
}

HeaderBlock FindHeaderBlock(std::string_view mail)
{
    size_t begin = 0;
    while (begin < mail.size() && WithoutLineEnd(FirstLine(mail.substr(begin))).empty())
        begin += FirstLine(mail.substr(begin)).size();
    if (!IsHeaderFieldLine(FirstLine(mail.substr(begin))) && CountMailFields(mail.substr(begin)) < 2)
        return {};
    while (!IsHeaderFieldLine(FirstLine(mail.substr(begin))))
        begin += FirstLine(mail.substr(begin)).size();
    size_t end = begin;
    while (end < mail.size() && !WithoutLineEnd(FirstLine(mail.substr(end))).empty())
        end += FirstLine(mail.substr(end)).size();
    return {begin, end};
}

std::string HeaderTextAsUtf8(std::string_view block)
{
    if (IsCleanUtf8(block))
        return std::string(block);
    std::string text;
    while (!block.empty())
    {
        const std::string_view line = FirstLine(block);
        text += GuessUtf8(line);
        block.remove_prefix(line.size());
    }
    return text;
}

std::string DecodeWords(std::string_view utf8)
{
    if (utf8.find("=?") == std::string_view::npos)
        return std::string(utf8);
    const GlibText decoded(g_mime_utils_header_decode_text(nullptr, std::string(utf8).c_str()));
    return RepairUtf8(decoded.get());
}

MailHeaders::MailHeaders(std::string_view utf8)
{
    while (!utf8.empty())
    {
        const std::string_view whole = FirstLine(utf8);
        const std::string_view line = WithoutLineEnd(whole);
        utf8.remove_prefix(whole.size());
        if (IsContinuation(line) && !fields.empty())
            fields.back().value += line;
        else if (IsHeaderFieldLine(line))
        {
            const size_t colon = line.find(':');
            fields.push_back(
                {AsciiLower(Trimmed(line.substr(0, colon))), std::string(line.substr(colon + 1))});
        }
    }
}

std::string_view MailHeaders::First(std::string_view name) const
{
    const auto field = std::ranges::find(fields, name, &HeaderField::name);
    return field != fields.end() ? Trimmed(field->value) : std::string_view();
}

std::string MailHeaders::Text(std::string_view name) const
{
    return DecodeWords(First(name));
}

std::vector<MailAddress> MailHeaders::Addresses(std::string_view name) const
{
    std::vector<MailAddress> addresses;
    for (const HeaderField& field : fields)
        if (field.name == name)
            ReadAddresses(field.value, addresses);
    return addresses;
}

void LimitGroups(std::string& mail)
{
    if (std::ranges::count(mail, ':') <= mostColons)
        return;
    for (size_t begin = 0; begin < mail.size();)
    {
        const std::string_view line = FirstLine(std::string_view(mail).substr(begin));
        const bool holdsAddresses = IsAddressFieldLine(line);
        size_t end = begin + line.size();
        while (end < mail.size() && IsContinuation(std::string_view(mail).substr(end)))
            end += FirstLine(std::string_view(mail).substr(end)).size();
        if (holdsAddresses)
            LimitColons(std::span(mail).subspan(begin, end - begin));
        begin = end;
    }
}
