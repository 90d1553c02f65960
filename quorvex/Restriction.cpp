#include "quorvex/Restriction.h"

bool IsTextTag(ULONG tag) noexcept
{
    return PROP_TYPE(tag) == PT_UNICODE || PROP_TYPE(tag) == PT_STRING8;
}

bool IsNumberTag(ULONG tag) noexcept
{
    switch (PROP_TYPE(tag))
    {
    case PT_I2:
    case PT_LONG:
    case PT_I8:
    case PT_BOOLEAN:
    case PT_SYSTIME:
        return true;
    default:
        return false;
    }
}

bool IsBinaryTag(ULONG tag) noexcept
{
    return PROP_TYPE(tag) == PT_BINARY;
}

std::optional<std::int64_t> NumberOf(const SPropValue& value) noexcept
{
    switch (PROP_TYPE(value.ulPropTag))
    {
    case PT_I2:
        return value.Value.i;
    case PT_LONG:
        return value.Value.l;
    case PT_I8:
        return value.Value.li.QuadPart;
    case PT_BOOLEAN:
        return value.Value.b ? 1 : 0;
    case PT_SYSTIME:
        return static_cast<std::int64_t>(std::uint64_t{value.Value.ft.dwHighDateTime} << 32 |
                                         value.Value.ft.dwLowDateTime);
    default:
        return std::nullopt;
    }
}

std::optional<ColumnKey> EqualityColumn(const Restriction& condition)
{
    if (condition.kind == RES_PROPERTY && condition.relop == RELOP_EQ && !IsNumberTag(condition.tag))
        return ColumnKey{condition.tag, false};
    if (condition.kind == RES_CONTENT && LOWORD(condition.fuzzyLevel) == FL_FULLSTRING)
        return ColumnKey{condition.tag, (condition.fuzzyLevel & FL_IGNORECASE) != 0};
    return std::nullopt;
}
