#include "localmapi/ValueComparison.h"

#include "localmapi/TextConversion.h"

#include <algorithm>

namespace
{
std::weak_ordering CompareIgnoringCase(const std::string& left, const std::string& right)
{
    const std::wstring wideLeft = WideFromUtf8(left);
    const std::wstring wideRight = WideFromUtf8(right);
    const int result = CompareStringOrdinal(wideLeft.data(), static_cast<int>(wideLeft.size()),
                                            wideRight.data(), static_cast<int>(wideRight.size()), TRUE);
    return result <=> CSTR_EQUAL;
}

// Numbers by size, texts by code point, bytes by value; other kinds by kind.
std::weak_ordering CompareExactly(const StoredValue& left, const StoredValue& right)
{
    if (left < right)
        return std::weak_ordering::less;
    return right < left ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

// As CompareExactly, but what is no number stands in no order to any: nothing is equal to it.
std::partial_ordering CompareForRelation(const StoredValue& left, const StoredValue& right)
{
    const auto* const leftReal = std::get_if<double>(&left);
    const auto* const rightReal = std::get_if<double>(&right);
    if (leftReal && rightReal)
        return *leftReal <=> *rightReal;
    return CompareExactly(left, right);
}

// The text without its accents and other marks that take no room of their own.
std::wstring WithoutNonspacingMarks(const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    std::wstring composite(length ? FoldStringW(MAP_COMPOSITE, text.data(), length, nullptr, 0) : 0, L'\0');
    if (composite.empty())
        return text;
    const int folded =
        FoldStringW(MAP_COMPOSITE, text.data(), length, composite.data(), static_cast<int>(composite.size()));
    std::vector<WORD> kinds(composite.size());
    GetStringTypeW(CT_CTYPE3, composite.data(), folded, kinds.data());
    std::wstring plain;
    for (int index = 0; index < folded; ++index)
    {
        if (!(kinds[index] & C3_NONSPACING))
            plain += composite[index];
    }
    return plain;
}

bool MatchesText(std::wstring text, std::wstring part, ULONG fuzzyLevel)
{
    const bool ignoreCase = (fuzzyLevel & (FL_IGNORECASE | FL_LOOSE)) != 0;
    if (fuzzyLevel & (FL_IGNORENONSPACE | FL_LOOSE))
    {
        text = WithoutNonspacingMarks(text);
        part = WithoutNonspacingMarks(part);
    }
    const int textLength = static_cast<int>(text.size());
    const int partLength = static_cast<int>(part.size());
    if (partLength > textLength)
        return false;
    const auto equals = [&](int length)
    { return CompareStringOrdinal(text.data(), length, part.data(), partLength, ignoreCase) == CSTR_EQUAL; };
    if (fuzzyLevel & FL_PREFIX)
        return equals(partLength);
    if (!(fuzzyLevel & FL_SUBSTRING))
        return equals(textLength);
    // FindStringOrdinal finds no empty text.
    return partLength == 0 || FindStringOrdinal(FIND_FROMSTART, text.data(), textLength, part.data(),
                                                partLength, ignoreCase) >= 0;
}

bool MatchesBytes(const Blob& bytes, const Blob& part, ULONG fuzzyLevel)
{
    if (fuzzyLevel & FL_PREFIX)
        return part.size() <= bytes.size() && std::equal(part.begin(), part.end(), bytes.begin());
    if (fuzzyLevel & FL_SUBSTRING)
        return std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end() ||
               part.empty();
    return bytes == part;
}

std::size_t SizeOfText(const std::string& text, ULONG tag)
{
    const std::wstring wide = WideFromUtf8(text);
    if (PROP_TYPE(tag) == PT_STRING8)
        return AnsiFromWide(wide).size() + 1;
    return (wide.size() + 1) * sizeof(wchar_t);
}
}    // namespace

std::weak_ordering CompareForSort(const StoredValue& left, const StoredValue& right)
{
    if (std::holds_alternative<std::string>(left) && std::holds_alternative<std::string>(right))
        return CompareIgnoringCase(std::get<std::string>(left), std::get<std::string>(right));
    return CompareExactly(left, right);
}

bool StandsInRelation(const StoredValue& left, ULONG relop, const StoredValue& right)
{
    if (left.index() != right.index() || std::holds_alternative<std::monostate>(left))
        return false;
    const std::partial_ordering order = CompareForRelation(left, right);
    switch (relop)
    {
    case RELOP_LT:
        return order < 0;
    case RELOP_LE:
        return order <= 0;
    case RELOP_GT:
        return order > 0;
    case RELOP_GE:
        return order >= 0;
    case RELOP_EQ:
        return order == 0;
    case RELOP_NE:
        return order != 0;
    default:
        return false;
    }
}

bool MatchesContent(const StoredValue& value, const StoredValue& part, ULONG fuzzyLevel)
{
    if (value.index() != part.index())
        return false;
    if (const auto* const text = std::get_if<std::string>(&value))
        return MatchesText(WideFromUtf8(*text), WideFromUtf8(std::get<std::string>(part)), fuzzyLevel);
    if (const auto* const bytes = std::get_if<Blob>(&value))
        return MatchesBytes(*bytes, std::get<Blob>(part), fuzzyLevel);
    return false;
}

std::size_t SizeOfValue(const StoredValue& value, ULONG tag)
{
    if (std::holds_alternative<std::monostate>(value))
        return 0;
    if (const auto* const text = std::get_if<std::string>(&value))
        return SizeOfText(*text, tag);
    if (const auto* const bytes = std::get_if<Blob>(&value))
        return bytes->size();
    switch (PROP_TYPE(tag))
    {
    case PT_I2:
    case PT_BOOLEAN:
        return sizeof(short);
    case PT_LONG:
    case PT_R4:
        return sizeof(LONG);
    default:
        return sizeof(std::int64_t);
    }
}
