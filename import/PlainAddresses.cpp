#include "import/PlainAddresses.h"

#include <glib.h>

#include <algorithm>
#include <optional>
#include <string>

namespace
{
bool IsAtomCharacter(char character)
{
    return g_ascii_isalnum(character) || character == '-' || character == '_' || character == '+';
}

bool IsDotAtom(std::string_view text)
{
    const auto inDotAtom = [](char character) { return IsAtomCharacter(character) || character == '.'; };
    return !text.empty() && !text.starts_with('.') && !text.ends_with('.') &&
           text.find("..") == std::string_view::npos && std::ranges::all_of(text, inDotAtom);
}

bool IsDomain(std::string_view text)
{
    const auto inDomain = [](char character)
    { return g_ascii_isalnum(character) || character == '-' || character == '.'; };
    // The library shows international names in their own letters.
    return IsDotAtom(text) && std::ranges::all_of(text, inDomain) &&
           text.find("--") == std::string_view::npos;
}

bool IsAddress(std::string_view text)
{
    const size_t at = text.find('@');
    return at != std::string_view::npos && IsDotAtom(text.substr(0, at)) && IsDomain(text.substr(at + 1));
}

// Words of letters and digits with one space between two.
bool IsPhrase(std::string_view text)
{
    const auto inPhrase = [](char character) { return IsAtomCharacter(character) || character == ' '; };
    return !text.empty() && !text.starts_with(' ') && !text.ends_with(' ') &&
           text.find("  ") == std::string_view::npos && std::ranges::all_of(text, inPhrase);
}

bool IsQuotable(std::string_view text)
{
    const auto asItIs = [](char character)
    { return character >= ' ' && character < 0x7F && character != '\\' && character != '"'; };
    return !text.empty() && !text.starts_with(' ') && !text.ends_with(' ') &&
           text.find("  ") == std::string_view::npos && text.find("=?") == std::string_view::npos &&
           std::ranges::all_of(text, asItIs);
}

void SkipBlanks(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

std::string_view WithoutBlanksBehind(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// The name in front of '<', taken off `rest`.
std::optional<std::string> TakeName(std::string_view& rest)
{
    std::string_view name;
    if (rest.starts_with('"'))
    {
        const size_t end = rest.find('"', 1);
        if (end == std::string_view::npos)
            return std::nullopt;
        name = rest.substr(1, end - 1);
        rest.remove_prefix(end + 1);
        SkipBlanks(rest);
        return IsQuotable(name) && rest.starts_with('<') ? std::optional(std::string(name)) : std::nullopt;
    }
    const size_t bracket = std::min(rest.find('<'), rest.size());
    name = WithoutBlanksBehind(rest.substr(0, bracket));
    rest.remove_prefix(bracket);
    return name.empty() || IsPhrase(name) ? std::optional(std::string(name)) : std::nullopt;
}

// One mailbox, taken off `rest` up to the comma behind it.
std::optional<MailAddress> TakeMailbox(std::string_view& rest)
{
    const std::string_view bare = WithoutBlanksBehind(rest.substr(0, rest.find(',')));
    if (IsAddress(bare))
    {
        rest.remove_prefix(bare.size());
        return MailAddress{std::string(bare), std::string(bare)};
    }
    std::optional<std::string> name = TakeName(rest);
    const size_t end = rest.find('>');
    if (!name || end == std::string_view::npos || !IsAddress(rest.substr(1, end - 1)))
        return std::nullopt;
    MailAddress mailbox{std::move(*name), std::string(rest.substr(1, end - 1))};
    rest.remove_prefix(end + 1);
    if (mailbox.name.empty())
        mailbox.name = mailbox.address;
    return mailbox;
}
}    // namespace

bool ReadPlainAddresses(std::string_view value, std::vector<MailAddress>& addresses)
{
    const size_t before = addresses.size();
    while (true)
    {
        SkipBlanks(value);
        std::optional<MailAddress> mailbox = TakeMailbox(value);
        SkipBlanks(value);
        if (!mailbox || !(value.empty() || value.starts_with(',')))
        {
            addresses.resize(before);
            return false;
        }
        addresses.push_back(std::move(*mailbox));
        if (value.empty())
            return true;
        value.remove_prefix(1);
    }
}
