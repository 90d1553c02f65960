#include "quorvex/RestrictionEvaluator.h"

#include "quorvex/CaseFolding.h"

#include <algorithm>
#include <compare>

namespace
{
const std::wstring& TextIn(const RestrictionValue& value)
{
    return *std::get<SharedText>(value);
}

bool HoldsAs(std::strong_ordering order, ULONG relop)
{
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
    default:
        return order != 0;
    }
}

template <class T>
bool HoldsFor(const std::optional<T>& found, const Restriction& condition)
{
    return found && HoldsAs(*found <=> std::get<T>(condition.value), condition.relop);
}

bool MeetsProperty(const Restriction& condition, RowValues& row)
{
    if (condition.relop == RELOP_EQ && !IsNumberTag(condition.tag))
        return row.Equals({condition.tag, false}, condition.value);
    if (IsNumberTag(condition.tag))
        return HoldsFor(row.Number(condition.tag), condition);
    if (IsBinaryTag(condition.tag))
        return HoldsFor(row.Binary(condition.tag), condition);
    return HoldsAs(row.Text(condition.tag) <=> TextIn(condition.value), condition.relop);
}

bool Contains(const std::wstring& text, const std::wstring& value, ULONG level)
{
    return level == FL_PREFIX ? text.starts_with(value) : text.find(value) != text.npos;
}

bool MeetsContent(const Restriction& condition, RowValues& row)
{
    const ULONG level = LOWORD(condition.fuzzyLevel);
    const bool ignoresCase = (condition.fuzzyLevel & FL_IGNORECASE) != 0;
    if (level == FL_FULLSTRING)
        return row.Equals({condition.tag, ignoresCase}, condition.value);
    const std::wstring text = row.Text(condition.tag);
    return ignoresCase ? Contains(FoldCase(text), FoldCase(TextIn(condition.value)), level)
                       : Contains(text, TextIn(condition.value), level);
}
}    // namespace

bool RowValues::Equals(const ColumnKey& column, const RestrictionValue& value)
{
    if (IsBinaryTag(column.tag))
        return Binary(column.tag) == std::get<std::vector<std::uint8_t>>(value);
    const std::wstring text = Text(column.tag);
    return column.ignoresCase ? FoldCase(text) == FoldCase(TextIn(value)) : text == TextIn(value);
}

bool Meets(const Restriction& restriction, RowValues& row)
{
    const auto isMet = [&](const Restriction& child) { return Meets(child, row); };
    switch (restriction.kind)
    {
    case RES_AND:
        return std::ranges::all_of(restriction.children, isMet);
    case RES_OR:
        return std::ranges::any_of(restriction.children, isMet);
    case RES_NOT:
        return !std::ranges::all_of(restriction.children, isMet);
    case RES_CONTENT:
        return MeetsContent(restriction, row);
    case RES_PROPERTY:
        return MeetsProperty(restriction, row);
    case RES_EXIST:
        return row.Exists(restriction.tag);
    case RES_SUBRESTRICTION:
        return std::ranges::all_of(restriction.children, [&](const Restriction& inner)
                                   { return row.SomeSubObjectMeets(restriction.tag, inner); });
    default:
        return false;
    }
}
