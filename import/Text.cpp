#include "import/Text.h"

#include "import/GlibOwners.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include <iconv.h>

namespace
{
constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Windows-1252 from 0x80 to 0x9F; the five unassigned bytes keep their C1 control, as the web reads them.
constexpr std::array<uint16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string DecodeWindows1252(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const unsigned char byte : bytes)
    {
        if (byte < 0x80)
        {
            text += static_cast<char>(byte);
            continue;
        }
        const gunichar character = byte < 0xA0 ? windows1252[byte - 0x80] : byte;
        char encoded[6];
        text.append(encoded, static_cast<size_t>(g_unichar_to_utf8(character, encoded)));
    }
    return text;
}

struct CharsetAlias
{
    std::string_view named;
    const char* read;
};

// Mail names the small charset and means the superset that its writer's system had.
constexpr CharsetAlias supersets[] = {
    {"gb2312", "GB18030"},      {"gbk", "GB18030"},       {"ks_c_5601-1987", "CP949"},
    {"ks_c_5601", "CP949"},     {"euc-kr", "CP949"},      {"shift_jis", "CP932"},
    {"shift-jis", "CP932"},     {"sjis", "CP932"},        {"x-sjis", "CP932"},
    {"tis-620", "CP874"},       {"iso-8859-9", "CP1254"}, {"iso-8859-11", "CP874"},
    {"iso-8859-8-i", "CP1255"}, {"utf-16", "UTF-16"},     {"unicode", "UTF-16"},
    {"x-gbk", "GB18030"},       {"utf-7", "UTF-7"},       {"unicode-1-1-utf-7", "UTF-7"}};

bool IsLatin1(const std::string& name)
{
    return name == "iso-8859-1" || name == "latin1" || name == "iso8859-1" || name == "iso_8859-1" ||
           name == "windows-1252" || name == "cp1252" || name == "x-ansi";
}

bool IsGuessed(const std::string& name)
{
    return name.empty() || name == "us-ascii" || name == "ascii" || name == "ansi_x3.4-1968" ||
           name == "unknown-8bit" || name == "x-unknown" || name == "default" || name == "8bit";
}

class Converter
{
public:
    explicit Converter(const char* charset) : handle(iconv_open("UTF-8", charset)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (IsOpen())
            iconv_close(handle);
    }

    bool IsOpen() const { return handle != reinterpret_cast<iconv_t>(-1); }

    std::string Convert(std::string_view bytes)
    {
        std::string text;
        std::array<char, 4096> chunk;
        char* input = const_cast<char*>(bytes.data());
        size_t left = bytes.size();
        while (left > 0)
        {
            char* output = chunk.data();
            size_t room = chunk.size();
            const size_t result = iconv(handle, &input, &left, &output, &room);
            const int error = errno;
            text.append(chunk.data(), chunk.size() - room);
            if (result != static_cast<size_t>(-1) || error == E2BIG)
                continue;
            text += replacement;
            ++input;
            --left;
        }
        return text;
    }

private:
    iconv_t handle;
};

std::string DecodeByName(std::string_view bytes, const std::string& name)
{
    const auto* const alias = std::ranges::find(supersets, std::string_view(name), &CharsetAlias::named);
    const char* const charset =
        alias != std::end(supersets) ? alias->read : g_mime_charset_iconv_name(name.c_str());
    Converter converter(charset ? charset : name.c_str());
    return converter.IsOpen() ? RepairUtf8(converter.Convert(bytes)) : GuessUtf8(bytes);
}

std::string WithoutByteOrderMark(std::string text)
{
    if (text.starts_with(byteOrderMark))
        text.erase(0, byteOrderMark.size());
    return text;
}
}    // namespace

bool IsCleanUtf8(std::string_view bytes)
{
    // With a length, GLib counts a NUL as invalid.
    return g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr);
}

std::string RepairUtf8(std::string_view bytes)
{
    std::string text;
    while (true)
    {
        const char* end = nullptr;
        const bool valid = g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), &end);
        if (valid && text.empty())
            return std::string(bytes);
        const size_t length = static_cast<size_t>(end - bytes.data());
        text.append(bytes.substr(0, length));
        if (valid)
            return text;
        text += replacement;
        bytes.remove_prefix(length + 1);
    }
}

std::string GuessUtf8(std::string_view bytes)
{
    if (IsCleanUtf8(bytes))
        return std::string(bytes);
    // A NUL alone says nothing about the charset.
    if (bytes.find('\0') != std::string_view::npos)
    {
        std::string repaired(bytes);
        std::ranges::replace(repaired, '\0', ' ');
        if (IsCleanUtf8(repaired))
            return RepairUtf8(bytes);
    }
    return RepairUtf8(DecodeWindows1252(bytes));
}

std::string DecodeCharset(std::string_view bytes, std::string_view charset)
{
    const std::string name = AsciiLower(Trimmed(charset));
    if (IsGuessed(name))
        return WithoutByteOrderMark(GuessUtf8(bytes));
    if (name == "utf-8" || name == "utf8")
        return WithoutByteOrderMark(RepairUtf8(bytes));
    if (IsLatin1(name))
        return RepairUtf8(DecodeWindows1252(bytes));
    return WithoutByteOrderMark(DecodeByName(bytes, name));
}

std::string WithCrLf(std::string_view text)
{
    std::string lines;
    lines.reserve(text.size() + text.size() / 32);
    size_t nextCr = text.find('\r');
    for (size_t at = 0;;)
    {
        const size_t end = std::min(nextCr, text.find('\n', at));
        lines += text.substr(at, end - at);
        if (end == std::string_view::npos)
            return lines;
        lines += "\r\n";
        at = end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
        if (end == nextCr)
            nextCr = text.find('\r', at);
    }
}

std::string AsciiLower(std::string_view text)
{
    std::string lower(text);
    for (char& character : lower)
        character = g_ascii_tolower(character);
    return lower;
}

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string CaseFolded(const std::string& utf8)
{
    const GlibText folded(g_utf8_casefold(utf8.c_str(), static_cast<gssize>(utf8.size())));
    return folded.get();
}
