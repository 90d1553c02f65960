#include "import/MailDate.h"

#include "import/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <string>
#include <utility>

namespace
{
constexpr int64_t secondsFrom1601To1970 = 11'644'473'600;
constexpr int64_t ticksPerSecond = 10'000'000;

struct DateParts
{
    int day = 0;
    int month = 0;
    int year = -1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool hasTime = false;
    int zoneMinutes = 0;
    bool hasZone = false;
};

// A comment may hold anything, even digits and other comments.
std::string WithoutComments(std::string_view text)
{
    std::string plain;
    int depth = 0;
    for (const char character : text)
    {
        if (character == '(')
            ++depth;
        else if (character == ')' && depth > 0)
            --depth;
        else if (depth == 0)
            plain += character;
    }
    return plain;
}

// The word that `text` begins with, taken off it; empty behind the last.
std::string_view TakeWord(std::string_view& text)
{
    constexpr std::string_view separators = " \t\r\n,";
    text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(word.size());
    return word;
}

std::optional<int> Number(std::string_view digits)
{
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || digits[0] == '-' || error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

int MonthNumber(std::string_view word)
{
    constexpr std::string_view months = "janfebmaraprmayjunjulaugsepoctnovdec";
    if (word.size() < 3)
        return 0;
    const size_t at = months.find(AsciiLower(word.substr(0, 3)));
    return at == std::string_view::npos || at % 3 != 0 ? 0 : static_cast<int>(at / 3) + 1;
}

int FullYear(int year, size_t digits)
{
    if (digits >= 4)
        return year;
    // RFC 5322 4.3: two digits below 50 are of this century, three digits count from 1900.
    return digits <= 2 && year < 50 ? year + 2000 : year + 1900;
}

bool ReadTime(std::string_view word, DateParts& parts)
{
    std::array<int, 3> fields = {};
    size_t count = 0;
    std::string_view rest = word.substr(0, word.find_first_of(".Zz"));
    while (!rest.empty())
    {
        const size_t colon = std::min(rest.find(':'), rest.size());
        const std::optional<int> field = Number(rest.substr(0, colon));
        if (!field || count == fields.size())
            return false;
        fields[count++] = *field;
        rest.remove_prefix(std::min(colon + 1, rest.size()));
    }
    if (count < 2)
        return false;
    parts.hour = fields[0];
    parts.minute = fields[1];
    parts.second = fields[2];
    parts.hasTime = true;
    return true;
}

bool ReadNumericZone(std::string_view word, DateParts& parts)
{
    if (word.size() < 3 || (word[0] != '+' && word[0] != '-'))
        return false;
    std::string digits(word.substr(1));
    std::erase(digits, ':');
    const std::optional<int> value = Number(digits);
    if (!value || digits.size() < 2 || digits.size() > 4)
        return false;
    const int minutes = digits.size() == 2 ? *value * 60 : *value / 100 * 60 + *value % 100;
    // No zone is further away than a day; such a one is as good as none.
    if (minutes < 24 * 60)
        parts.zoneMinutes = word[0] == '-' ? -minutes : minutes;
    parts.hasZone = true;
    return true;
}

bool ReadNamedZone(std::string_view word, DateParts& parts)
{
    struct Zone
    {
        std::string_view name;
        int hours;
    };
    constexpr Zone zones[] = {{"ut", 0},    {"utc", 0},   {"gmt", 0},   {"z", 0},     {"est", -5},
                              {"edt", -4},  {"cst", -6},  {"cdt", -5},  {"mst", -7},  {"mdt", -6},
                              {"pst", -8},  {"pdt", -7},  {"bst", 1},   {"ist", 1},   {"cet", 1},
                              {"cest", 2},  {"met", 1},   {"mest", 2},  {"eet", 2},   {"eest", 3},
                              {"msk", 3},   {"jst", 9},   {"kst", 9},   {"wet", 0},   {"west", 1},
                              {"akst", -9}, {"akdt", -8}, {"hst", -10}, {"aest", 10}, {"aedt", 11}};
    const std::string lower = AsciiLower(word);
    const auto* const zone = std::ranges::find(zones, std::string_view(lower), &Zone::name);
    if (zone == std::end(zones))
        return false;
    if (!parts.hasZone)
        parts.zoneMinutes = zone->hours * 60;
    parts.hasZone = true;
    return true;
}

// 2002-08-22, 22-Aug-2002, 22/8/2002.
bool ReadJoinedDate(std::string_view word, DateParts& parts)
{
    const size_t first = word.find_first_of("-/", 1);
    const size_t second = first == std::string_view::npos ? first : word.find_first_of("-/", first + 1);
    if (second == std::string_view::npos)
        return false;
    std::string_view head = word.substr(0, first);
    const std::string_view middle = word.substr(first + 1, second - first - 1);
    std::string_view tail = word.substr(second + 1);
    const int month = MonthNumber(middle) ? MonthNumber(middle) : Number(middle).value_or(0);
    if (head.size() == 4)
        std::swap(head, tail);
    const std::optional<int> day = Number(head);
    const std::optional<int> year = Number(tail);
    if (!day || !year || month == 0)
        return false;
    parts.day = *day;
    parts.month = month;
    parts.year = FullYear(*year, tail.size());
    return true;
}

void ReadNumber(std::string_view word, DateParts& parts)
{
    const std::optional<int> number = Number(word);
    if (!number)
        return;
    if (parts.day == 0 && word.size() <= 2)
        parts.day = *number;
    else if (parts.year < 0)
        parts.year = FullYear(*number, word.size());
}

void ReadWord(std::string_view word, DateParts& parts)
{
    const size_t isoTime = word.find('T');
    if (isoTime == 10 && ReadJoinedDate(word.substr(0, isoTime), parts))
    {
        const std::string_view time = word.substr(isoTime + 1);
        const size_t zone = time.find_first_of("+-");
        ReadTime(time.substr(0, zone), parts);
        if (zone != std::string_view::npos)
            ReadNumericZone(time.substr(zone), parts);
        return;
    }
    if (!parts.hasTime && word.find(':') != std::string_view::npos && ReadTime(word, parts))
        return;
    if (ReadNumericZone(word, parts) || (parts.hasTime && ReadNamedZone(word, parts)))
        return;
    if (parts.month == 0 && MonthNumber(word) && !ReadJoinedDate(word, parts))
        parts.month = MonthNumber(word);
    else if (!(parts.day == 0 && ReadJoinedDate(word, parts)))
        ReadNumber(word, parts);
}

std::optional<FileTime> Instant(const DateParts& parts)
{
    using namespace std::chrono;
    const year_month_day date{year(parts.year), month(static_cast<unsigned>(parts.month)),
                              day(static_cast<unsigned>(parts.day))};
    // FILETIME starts in 1601; a leap second counts as the second after it.
    if (parts.year < 1601 || parts.year > 9999 || !date.ok() || parts.hour > 24 || parts.minute > 59 ||
        parts.second > 60)
        return std::nullopt;
    const int64_t days = sys_days(date).time_since_epoch().count();
    const int64_t seconds =
        days * 86400 + parts.hour * 3600 + (parts.minute - parts.zoneMinutes) * 60 + parts.second;
    if (seconds < -secondsFrom1601To1970)
        return std::nullopt;
    return FileTimeFromUnix(seconds);
}
}    // namespace

FileTime FileTimeFromUnix(int64_t seconds)
{
    return (seconds + secondsFrom1601To1970) * ticksPerSecond;
}

std::optional<FileTime> ParseMailDate(std::string_view text)
{
    std::string plain;
    if (text.find('(') != std::string_view::npos)
    {
        plain = WithoutComments(text);
        text = plain;
    }
    DateParts parts;
    for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text))
        ReadWord(word, parts);
    return Instant(parts);
}
