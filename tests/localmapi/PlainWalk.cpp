#include "tests/localmapi/PlainWalk.h"

#include <windows.h>

#include <mapitags.h>

#include <algorithm>
#include <optional>

namespace
{
// A row under test: the message's own, or one of a table inside it, which has no further ones.
struct Place
{
    const ModelRow& row;
    const ModelMessage* message = nullptr;
};

ULONG UnicodeTag(ULONG tag)
{
    return PROP_TYPE(tag) == PT_STRING8 ? CHANGE_PROP_TYPE(tag, PT_UNICODE) : tag;
}

const ModelValue* Find(const Place& place, ULONG tag)
{
    const auto found = place.row.find(UnicodeTag(tag));
    return found == place.row.end() ? nullptr : &found->second;
}

ModelValue ValueOf(const SPropValue& property)
{
    const auto& value = property.Value;
    switch (PROP_TYPE(property.ulPropTag))
    {
    case PT_I2:
        return std::int64_t{value.i};
    case PT_BOOLEAN:
        return std::int64_t{value.b ? 1 : 0};
    case PT_LONG:
        return std::int64_t{value.l};
    case PT_SYSTIME:
        return static_cast<std::int64_t>(std::uint64_t{value.ft.dwHighDateTime} << 32 |
                                         value.ft.dwLowDateTime);
    case PT_DOUBLE:
        return value.dbl;
    case PT_UNICODE:
        return CharactersOf(value.lpszW);
    case PT_STRING8:
    {
        const std::string ascii = value.lpszA;
        return std::u32string(ascii.begin(), ascii.end());
    }
    case PT_BINARY:
        return ModelBytes(value.bin.lpb, value.bin.lpb + value.bin.cb);
    case PT_CLSID:
    {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(value.lpguid);
        return ModelBytes(bytes, bytes + sizeof(GUID));
    }
    default:
        return std::int64_t{value.li.QuadPart};
    }
}

template <typename T>
bool Holds(const T& left, ULONG relop, const T& right)
{
    switch (relop)
    {
    case RELOP_LT:
        return left < right;
    case RELOP_LE:
        return left <= right;
    case RELOP_GT:
        return left > right;
    case RELOP_GE:
        return left >= right;
    case RELOP_EQ:
        return left == right;
    default:
        return left != right;
    }
}

bool HoldsBetween(const ModelValue* left, ULONG relop, const ModelValue* right)
{
    if (!left || !right)
        return false;
    return std::visit([&](const auto& value)
                      { return Holds(value, relop, std::get<std::decay_t<decltype(value)>>(*right)); },
                      *left);
}

char32_t UpperCase(char32_t character)
{
    const bool isSmall = (character >= U'a' && character <= U'z') || character == U'\u00E9' ||
                         (character >= U'\u0430' && character <= U'\u044F');
    return isSmall ? character - 32 : character;
}

// Of the characters with accents there are these, and the accent alone.
std::u32string WithoutAccents(const std::u32string& text)
{
    std::u32string plain;
    for (const char32_t character : text)
    {
        if (character == U'\u00E9')
            plain += U'e';
        else if (character == U'\u00C9')
            plain += U'E';
        else if (character != U'\u0301')
            plain += character;
    }
    return plain;
}

std::u32string Folded(std::u32string text, ULONG level)
{
    if (level & (FL_IGNORENONSPACE | FL_LOOSE))
        text = WithoutAccents(text);
    if (level & (FL_IGNORECASE | FL_LOOSE))
        std::ranges::transform(text, text.begin(), UpperCase);
    return text;
}

template <typename T>
bool ContainsAsTold(const T& whole, const T& part, ULONG level)
{
    switch (level & 0xFFFF)
    {
    case FL_PREFIX:
        return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
    case FL_SUBSTRING:
        return part.empty() || !std::ranges::search(whole, part).empty();
    default:
        return whole == part;
    }
}

bool MeetsContent(const Place& place, const SContentRestriction& content)
{
    const ModelValue* const whole = Find(place, content.ulPropTag);
    if (!whole)
        return false;
    const ModelValue part = ValueOf(*content.lpProp);
    const ULONG level = content.ulFuzzyLevel;
    if (const auto* const text = std::get_if<std::u32string>(whole))
        return ContainsAsTold(Folded(*text, level), Folded(std::get<std::u32string>(part), level), level);
    return ContainsAsTold(std::get<ModelBytes>(*whole), std::get<ModelBytes>(part), level);
}

std::size_t SizeOf(const ModelValue& value, ULONG tag)
{
    switch (PROP_TYPE(tag))
    {
    case PT_UNICODE:
        return (WideOf(std::get<std::u32string>(value)).size() + 1) * sizeof(wchar_t);
    case PT_BINARY:
    case PT_CLSID:
        return std::get<ModelBytes>(value).size();
    case PT_I2:
    case PT_BOOLEAN:
        return 2;
    case PT_LONG:
        return 4;
    default:
        return 8;
    }
}

bool Meets(const Place& place, const SRestriction& restriction);

bool MeetsInside(const Place& place, const SSubRestriction& sub)
{
    if (!place.message)
        return false;
    const auto meets = [&](const ModelRow& row) { return Meets(Place{row}, *sub.lpRes); };
    return (sub.ulSubObject == PR_MESSAGE_RECIPIENTS &&
            std::ranges::any_of(place.message->recipients, meets)) ||
           (sub.ulSubObject == PR_MESSAGE_ATTACHMENTS &&
            std::ranges::any_of(place.message->attachments, meets));
}

bool MeetsBits(const Place& place, const SBitMaskRestriction& bits)
{
    const ModelValue* const value = Find(place, bits.ulPropTag);
    return value && ((std::get<std::int64_t>(*value) & bits.ulMask) != 0) == (bits.relBMR == BMR_NEZ);
}

bool MeetsSize(const Place& place, const SSizeRestriction& size)
{
    const ModelValue* const value = Find(place, size.ulPropTag);
    return value && Holds<std::size_t>(SizeOf(*value, size.ulPropTag), size.relop, size.cb);
}

bool Meets(const Place& place, const SRestriction& restriction)
{
    const auto& res = restriction.res;
    const auto meets = [&](const SRestriction& inner) { return Meets(place, inner); };
    switch (restriction.rt)
    {
    case RES_AND:
        return std::all_of(res.resAnd.lpRes, res.resAnd.lpRes + res.resAnd.cRes, meets);
    case RES_OR:
        return std::any_of(res.resOr.lpRes, res.resOr.lpRes + res.resOr.cRes, meets);
    case RES_NOT:
        return !meets(*res.resNot.lpRes);
    case RES_CONTENT:
        return MeetsContent(place, res.resContent);
    case RES_PROPERTY:
    {
        const ModelValue value = ValueOf(*res.resProperty.lpProp);
        return HoldsBetween(Find(place, res.resProperty.ulPropTag), res.resProperty.relop, &value);
    }
    case RES_COMPAREPROPS:
        return HoldsBetween(Find(place, res.resCompareProps.ulPropTag1), res.resCompareProps.relop,
                            Find(place, res.resCompareProps.ulPropTag2));
    case RES_BITMASK:
        return MeetsBits(place, res.resBitMask);
    case RES_SIZE:
        return MeetsSize(place, res.resSize);
    case RES_EXIST:
        return Find(place, res.resExist.ulPropTag) != nullptr;
    case RES_COMMENT:
        return !res.resComment.lpRes || meets(*res.resComment.lpRes);
    default:
        return MeetsInside(place, res.resSub);
    }
}
}    // namespace

bool Meets(const ModelMessage& message, const SRestriction& restriction)
{
    return Meets(Place{message.values, &message}, restriction);
}
