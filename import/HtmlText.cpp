#include "import/HtmlText.h"

#include "import/Text.h"

#include <glib.h>

#include <algorithm>
#include <cstdlib>

namespace
{
struct Entity
{
    std::string_view name;
    gunichar character;
};

constexpr Entity entities[] = {
    {"amp", '&'},       {"lt", '<'},        {"gt", '>'},        {"quot", '"'},      {"apos", '\''},
    {"nbsp", 0xA0},     {"iexcl", 0xA1},    {"cent", 0xA2},     {"pound", 0xA3},    {"curren", 0xA4},
    {"yen", 0xA5},      {"brvbar", 0xA6},   {"sect", 0xA7},     {"uml", 0xA8},      {"copy", 0xA9},
    {"ordf", 0xAA},     {"laquo", 0xAB},    {"not", 0xAC},      {"shy", 0xAD},      {"reg", 0xAE},
    {"macr", 0xAF},     {"deg", 0xB0},      {"plusmn", 0xB1},   {"sup2", 0xB2},     {"sup3", 0xB3},
    {"acute", 0xB4},    {"micro", 0xB5},    {"para", 0xB6},     {"middot", 0xB7},   {"cedil", 0xB8},
    {"sup1", 0xB9},     {"ordm", 0xBA},     {"raquo", 0xBB},    {"frac14", 0xBC},   {"frac12", 0xBD},
    {"frac34", 0xBE},   {"iquest", 0xBF},   {"Agrave", 0xC0},   {"Aacute", 0xC1},   {"Acirc", 0xC2},
    {"Atilde", 0xC3},   {"Auml", 0xC4},     {"Aring", 0xC5},    {"AElig", 0xC6},    {"Ccedil", 0xC7},
    {"Egrave", 0xC8},   {"Eacute", 0xC9},   {"Ecirc", 0xCA},    {"Euml", 0xCB},     {"Igrave", 0xCC},
    {"Iacute", 0xCD},   {"Icirc", 0xCE},    {"Iuml", 0xCF},     {"ETH", 0xD0},      {"Ntilde", 0xD1},
    {"Ograve", 0xD2},   {"Oacute", 0xD3},   {"Ocirc", 0xD4},    {"Otilde", 0xD5},   {"Ouml", 0xD6},
    {"times", 0xD7},    {"Oslash", 0xD8},   {"Ugrave", 0xD9},   {"Uacute", 0xDA},   {"Ucirc", 0xDB},
    {"Uuml", 0xDC},     {"Yacute", 0xDD},   {"THORN", 0xDE},    {"szlig", 0xDF},    {"agrave", 0xE0},
    {"aacute", 0xE1},   {"acirc", 0xE2},    {"atilde", 0xE3},   {"auml", 0xE4},     {"aring", 0xE5},
    {"aelig", 0xE6},    {"ccedil", 0xE7},   {"egrave", 0xE8},   {"eacute", 0xE9},   {"ecirc", 0xEA},
    {"euml", 0xEB},     {"igrave", 0xEC},   {"iacute", 0xED},   {"icirc", 0xEE},    {"iuml", 0xEF},
    {"eth", 0xF0},      {"ntilde", 0xF1},   {"ograve", 0xF2},   {"oacute", 0xF3},   {"ocirc", 0xF4},
    {"otilde", 0xF5},   {"ouml", 0xF6},     {"divide", 0xF7},   {"oslash", 0xF8},   {"ugrave", 0xF9},
    {"uacute", 0xFA},   {"ucirc", 0xFB},    {"uuml", 0xFC},     {"yacute", 0xFD},   {"thorn", 0xFE},
    {"yuml", 0xFF},     {"OElig", 0x152},   {"oelig", 0x153},   {"Scaron", 0x160},  {"scaron", 0x161},
    {"Yuml", 0x178},    {"fnof", 0x192},    {"circ", 0x2C6},    {"tilde", 0x2DC},   {"ensp", 0x2002},
    {"emsp", 0x2003},   {"thinsp", 0x2009}, {"zwnj", 0x200C},   {"zwj", 0x200D},    {"ndash", 0x2013},
    {"mdash", 0x2014},  {"lsquo", 0x2018},  {"rsquo", 0x2019},  {"sbquo", 0x201A},  {"ldquo", 0x201C},
    {"rdquo", 0x201D},  {"bdquo", 0x201E},  {"dagger", 0x2020}, {"bull", 0x2022},   {"hellip", 0x2026},
    {"permil", 0x2030}, {"prime", 0x2032},  {"lsaquo", 0x2039}, {"rsaquo", 0x203A}, {"euro", 0x20AC},
    {"trade", 0x2122},  {"larr", 0x2190},   {"uarr", 0x2191},   {"rarr", 0x2192},   {"darr", 0x2193},
    {"minus", 0x2212},  {"ne", 0x2260},     {"le", 0x2264},     {"ge", 0x2265},     {"alpha", 0x3B1},
    {"beta", 0x3B2},    {"gamma", 0x3B3},   {"delta", 0x3B4},   {"pi", 0x3C0},      {"Omega", 0x3A9}};

void AppendCharacter(std::string& text, gunichar character)
{
    char encoded[6];
    text.append(encoded, static_cast<size_t>(g_unichar_to_utf8(character, encoded)));
}

gunichar NumericCharacter(std::string_view digits)
{
    const bool hexadecimal = digits.starts_with('x') || digits.starts_with('X');
    const std::string number(hexadecimal ? digits.substr(1) : digits);
    char* end = nullptr;
    const unsigned long value = std::strtoul(number.c_str(), &end, hexadecimal ? 16 : 10);
    if (number.empty() || !g_ascii_isxdigit(number[0]) || *end != '\0')
        return 0;
    // Pages made with Windows-1252 number its characters by their bytes.
    if (value >= 0x80 && value <= 0x9F)
    {
        const char byte = static_cast<char>(value);
        return g_utf8_get_char(DecodeCharset({&byte, 1}, "windows-1252").c_str());
    }
    return value <= 0x10FFFF && value != 0 && g_unichar_validate(static_cast<gunichar>(value))
               ? static_cast<gunichar>(value)
               : 0xFFFD;
}

gunichar EntityCharacter(std::string_view name)
{
    if (name.starts_with('#'))
        return NumericCharacter(name.substr(1));
    const auto* const entity = std::ranges::find(entities, name, &Entity::name);
    return entity != std::end(entities) ? entity->character : 0;
}

// Writes words and line ends so that white space never piles up.
class TextFlow
{
public:
    void Character(char character)
    {
        if (preformatted == 0 &&
            (character == ' ' || character == '\t' || character == '\n' || character == '\r'))
        {
            spaceWanted = true;
            return;
        }
        if (preformatted > 0 && (character == '\n' || character == '\r'))
        {
            if (character == '\n')
                Break();
            return;
        }
        Begin();
        text += character;
        atLineStart = false;
    }

    void Wide(gunichar character)
    {
        // What the page calls a space that does not break is a space in plain text.
        if (character == 0xA0)
            character = ' ';
        Begin();
        AppendCharacter(text, character);
        atLineStart = false;
    }

    void Break()
    {
        FlushLines();
        text += '\n';
        trailingBreaks = text.size() == 1 ? 2 : trailingBreaks + 1;
        atLineStart = true;
        spaceWanted = false;
    }

    // Asks for at least this many line ends before the next word: 1 a new line, 2 an empty line between.
    void Block(int breaks)
    {
        if (!text.empty())
            wantedBreaks = std::max(wantedBreaks, breaks);
        spaceWanted = false;
    }

    void Tab()
    {
        if (!atLineStart && wantedBreaks == 0)
            Wide('\t');
        spaceWanted = false;
    }

    void Preformatted(bool begins) { preformatted = std::max(0, preformatted + (begins ? 1 : -1)); }

    std::string Take()
    {
        const size_t end = text.find_last_not_of(" \t\n");
        text.resize(end == std::string::npos ? 0 : end + 1);
        return std::move(text);
    }

private:
    void FlushLines()
    {
        while (!text.empty() && trailingBreaks < wantedBreaks)
        {
            text += '\n';
            ++trailingBreaks;
            atLineStart = true;
        }
        wantedBreaks = 0;
    }

    void Begin()
    {
        FlushLines();
        if (spaceWanted && !atLineStart)
            text += ' ';
        spaceWanted = false;
        trailingBreaks = 0;
    }

    std::string text;
    int wantedBreaks = 0;
    int trailingBreaks = 0;
    int preformatted = 0;
    bool spaceWanted = false;
    bool atLineStart = true;
};

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names)
{
    return std::ranges::find(names, name) != names.end();
}

class HtmlReader
{
public:
    explicit HtmlReader(std::string_view html) : rest(html) {}

    std::string Read()
    {
        while (!rest.empty())
        {
            if (rest[0] == '<')
                ReadMarkup();
            else if (rest[0] == '&')
                ReadEntity();
            else
                ReadCharacter();
        }
        return flow.Take();
    }

private:
    void ReadCharacter()
    {
        flow.Character(rest[0]);
        rest.remove_prefix(1);
    }

    void ReadEntity()
    {
        // No entity that mail uses is longer; a lone '&' before a far ';' is itself.
        const size_t end = rest.substr(0, 12).find_first_of("; \t\r\n<&", 1);
        const std::string_view name =
            end == std::string_view::npos ? std::string_view() : rest.substr(1, end - 1);
        const gunichar character = EntityCharacter(name);
        if (character == 0)
            return ReadCharacter();
        flow.Wide(character);
        rest.remove_prefix(end + (rest[end] == ';' ? 1 : 0));
    }

    void ReadMarkup()
    {
        if (rest.starts_with("<!--"))
            return SkipPast("-->", 4);
        const char next = rest.size() > 1 ? rest[1] : ' ';
        if (next == '!' || next == '?')
            return SkipPast(">", 1);
        if (next != '/' && !g_ascii_isalpha(next))
            return ReadCharacter();
        ReadTag();
    }

    void ReadTag()
    {
        const size_t end = TagEnd();
        const std::string_view inside = rest.substr(1, end - 1);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const bool closes = inside.starts_with('/');
        const std::string_view named = inside.substr(closes ? 1 : 0);
        const std::string name = AsciiLower(named.substr(0, named.find_first_of(" \t\r\n/>")));
        if (!closes && IsOneOf(name, {"script", "style", "title"}))
            return SkipElement(name);
        Apply(name, closes);
    }

    // A '>' inside a quoted attribute does not end the tag; a quote that is never closed does not count.
    size_t TagEnd()
    {
        char quote = 0;
        for (size_t index = 1; index < rest.size() && quotesClose; ++index)
        {
            const char character = rest[index];
            if (quote ? character == quote : (character == '"' || character == '\''))
                quote = quote ? 0 : character;
            else if (character == '>' && !quote)
                return index;
        }
        // Looking again from every later tag would take the square of the page's size.
        quotesClose = false;
        return std::min(rest.find('>'), rest.size());
    }

    void Apply(const std::string& name, bool closes)
    {
        if (name == "br")
            flow.Break();
        else if (name == "pre")
        {
            flow.Block(1);
            flow.Preformatted(!closes);
        }
        else if (IsOneOf(name,
                         {"p", "h1", "h2", "h3", "h4", "h5", "h6", "blockquote", "ul", "ol", "dl", "hr"}))
            flow.Block(2);
        else if (IsOneOf(name, {"div", "tr", "table", "dt", "dd", "center", "address", "section", "article",
                                "header", "footer", "form", "body"}))
            flow.Block(1);
        else if (name == "li")
            ApplyListItem(closes);
        else if (!closes && (name == "td" || name == "th"))
            flow.Tab();
    }

    void ApplyListItem(bool closes)
    {
        flow.Block(1);
        if (closes)
            return;
        flow.Character('*');
        flow.Character(' ');
    }

    void SkipPast(std::string_view mark, size_t from)
    {
        const size_t at = rest.find(mark, from);
        rest.remove_prefix(at == std::string_view::npos ? rest.size() : at + mark.size());
    }

    void SkipElement(const std::string& name)
    {
        for (size_t at = rest.find("</"); at != std::string_view::npos; at = rest.find("</", at + 2))
        {
            if (AsciiLower(rest.substr(at + 2, name.size())) != name)
                continue;
            rest.remove_prefix(at);
            return SkipPast(">", 0);
        }
        rest = {};
    }

    std::string_view rest;
    TextFlow flow;
    bool quotesClose = true;
};
}    // namespace

std::string HtmlToText(std::string_view html)
{
    return WithCrLf(HtmlReader(html).Read());
}

std::string TextToHtml(std::string_view text)
{
    std::string html = "<pre>";
    for (const char character : text)
    {
        if (character == '&')
            html += "&amp;";
        else if (character == '<')
            html += "&lt;";
        else if (character == '>')
            html += "&gt;";
        else
            html += character;
    }
    return html + "</pre>";
}

std::string HtmlCharset(std::string_view html)
{
    const std::string head = AsciiLower(html.substr(0, 2048));
    const size_t meta = head.find("<meta");
    const size_t at = meta == std::string::npos ? meta : head.find("charset=", meta);
    if (at == std::string::npos)
        return {};
    const std::string_view value = std::string_view(head).substr(at + 8);
    const size_t first = value.find_first_not_of("\"' ");
    if (first == std::string_view::npos)
        return {};
    return std::string(value.substr(first, value.find_first_of("\"' />;", first) - first));
}
