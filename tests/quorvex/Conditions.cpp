#include "tests/quorvex/Conditions.h"

#include <string>
#include <utility>

namespace where
{
Restriction Property(ULONG tag, ULONG relop, RestrictionValue value)
{
    return {.kind = RES_PROPERTY, .tag = tag, .relop = relop, .value = std::move(value)};
}

Restriction Equal(ULONG tag, const wchar_t* text)
{
    return Property(tag, RELOP_EQ, std::wstring(text));
}

Restriction Content(ULONG tag, ULONG fuzzyLevel, const wchar_t* text)
{
    return {.kind = RES_CONTENT, .tag = tag, .fuzzyLevel = fuzzyLevel, .value = std::wstring(text)};
}

Restriction Exist(ULONG tag)
{
    return {.kind = RES_EXIST, .tag = tag};
}

Restriction Of(ULONG kind, std::vector<Restriction> children)
{
    return {.kind = kind, .children = std::move(children)};
}

Restriction All(std::vector<Restriction> children)
{
    return Of(RES_AND, std::move(children));
}

Restriction Sub(ULONG table, std::vector<Restriction> children)
{
    return {.kind = RES_SUBRESTRICTION, .tag = table, .children = std::move(children)};
}
}    // namespace where
