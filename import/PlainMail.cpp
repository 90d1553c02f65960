#include "import/PlainMail.h"

#include "import/HtmlText.h"
#include "import/Text.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <string>
#include <utility>

namespace
{
struct TextForm
{
    bool isHtml = false;
    std::optional<std::string> charset;
    GMimeContentEncoding encoding = GMIME_CONTENT_ENCODING_DEFAULT;
};

bool IsBlank(char character)
{
    return character == ' ' || character == '\t';
}

bool IsPlainLine(std::string_view line, bool isFirst)
{
    // Lone line ends and NULs mean something else to every reader.
    if (line.find('\r') != std::string_view::npos || line.find('\0') != std::string_view::npos)
        return false;
    if (!isFirst && IsBlank(line[0]))
        return !Trimmed(line).empty();
    const size_t colon = line.find(':');
    return IsHeaderFieldLine(line) && !IsBlank(line[colon - 1]);
}

// Nothing but fields as they should be, and the empty line.
bool IsPlainBlock(std::string_view block)
{
    for (bool isFirst = true; !block.empty(); isFirst = false)
    {
        const size_t end = block.find('\n');
        if (end == std::string_view::npos)
            return false;
        std::string_view line = block.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        block.remove_prefix(end + 1);
        if (line.empty())
            return !isFirst && block.empty();
        if (!IsPlainLine(line, isFirst))
            return false;
    }
    return false;
}

// The lower-case value of a field that may stand there once; empty when it does not, nothing when it stands
// twice.
std::optional<std::string> OnlyValue(const MailHeaders& headers, std::string_view name)
{
    if (std::ranges::count(headers.Fields(), name, &HeaderField::name) > 1)
        return std::nullopt;
    return AsciiLower(headers.First(name));
}

bool IsToken(std::string_view text)
{
    const auto inToken = [](char character)
    { return g_ascii_isalnum(character) || character == '-' || character == '_' || character == '.'; };
    return !text.empty() && std::ranges::all_of(text, inToken);
}

// A value as a token, or as one in quotes; nothing when it is more than that.
std::optional<std::string_view> ParameterValue(std::string_view text)
{
    if (text.size() > 2 && text.starts_with('"') && text.ends_with('"'))
        text = text.substr(1, text.size() - 2);
    return IsToken(text) ? std::optional(text) : std::nullopt;
}

bool ReadParameters(std::string_view text, TextForm& form)
{
    while (!text.empty())
    {
        const size_t end = std::min(text.find(';'), text.size());
        const std::string_view parameter = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const size_t equals = std::min(parameter.find('='), parameter.size());
        const std::string_view name = parameter.substr(0, equals);
        const auto value = ParameterValue(parameter.substr(std::min(equals + 1, parameter.size())));
        if (!IsToken(name) || !value || (name == "charset" && form.charset))
            return false;
        if (name == "charset")
            form.charset = *value;
    }
    return true;
}

bool ReadType(const std::string& value, TextForm& form)
{
    const size_t semicolon = std::min(value.find(';'), value.size());
    const std::string_view type = Trimmed(std::string_view(value).substr(0, semicolon));
    form.isHtml = type == "text/html";
    return (value.empty() || type == "text/plain" || form.isHtml) &&
           ReadParameters(Trimmed(std::string_view(value).substr(std::min(semicolon + 1, value.size()))),
                          form);
}

bool ReadEncoding(std::string_view value, TextForm& form)
{
    if (value == "quoted-printable")
        form.encoding = GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE;
    else if (value == "base64")
        form.encoding = GMIME_CONTENT_ENCODING_BASE64;
    else
        return value.empty() || value == "7bit" || value == "8bit" || value == "binary";
    return true;
}

std::optional<TextForm> FormOf(const MailHeaders& headers)
{
    const std::optional<std::string> type = OnlyValue(headers, "content-type");
    const std::optional<std::string> encoding = OnlyValue(headers, "content-transfer-encoding");
    const std::optional<std::string> disposition = OnlyValue(headers, "content-disposition");
    TextForm form;
    const bool isPlain = type && encoding && disposition &&
                         (disposition->empty() || *disposition == "inline") && ReadType(*type, form) &&
                         ReadEncoding(*encoding, form);
    return isPlain ? std::optional(form) : std::nullopt;
}

std::string Decoded(std::string_view bytes, GMimeContentEncoding encoding)
{
    GMimeEncoding state;
    g_mime_encoding_init_decode(&state, encoding);
    std::string decoded(g_mime_encoding_outlen(&state, bytes.size()), '\0');
    decoded.resize(g_mime_encoding_flush(&state, bytes.data(), bytes.size(), decoded.data()));
    return decoded;
}
}    // namespace

std::optional<MimeContent> ReadPlainMail(std::string_view block, const MailHeaders& headers,
                                         std::string_view body)
{
    const std::optional<TextForm> form = FormOf(headers);
    if (!form || !IsPlainBlock(block))
        return std::nullopt;
    std::string decoded;
    if (form->encoding != GMIME_CONTENT_ENCODING_DEFAULT)
    {
        decoded = Decoded(body, form->encoding);
        body = decoded;
    }
    const std::string unnamed = form->isHtml && !form->charset ? HtmlCharset(body) : std::string();
    std::string text = WithCrLf(DecodeCharset(body, form->charset.value_or(unnamed)));
    MimeContent content;
    content.body = form->isHtml ? HtmlToText(text) : std::move(text);
    if (form->isHtml)
        content.html = std::move(text);
    return content;
}
