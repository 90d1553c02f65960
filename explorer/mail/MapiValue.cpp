#include "explorer/mail/MapiValue.h"

#include <windows.h>

#include <mapitags.h>

#include <cstddef>

const SPropValue* MapiValues::Find(ULONG place, ULONG type) const noexcept
{
    return place < count && PROP_TYPE(values[place].ulPropTag) == type ? &values[place] : nullptr;
}

std::wstring MapiValues::Text(ULONG place) const
{
    const SPropValue* value = Find(place, PT_UNICODE);
    return value && value->Value.lpszW ? std::wstring(value->Value.lpszW) : std::wstring();
}

std::optional<LONG> MapiValues::Number(ULONG place) const noexcept
{
    const SPropValue* value = Find(place, PT_LONG);
    return value ? std::optional(value->Value.l) : std::nullopt;
}

std::optional<FILETIME> MapiValues::Time(ULONG place) const noexcept
{
    const SPropValue* value = Find(place, PT_SYSTIME);
    return value ? std::optional(value->Value.ft) : std::nullopt;
}

EntryId MapiValues::Id(ULONG place) const
{
    const SPropValue* value = Find(place, PT_BINARY);
    if (!value)
        return {};
    const auto* bytes = reinterpret_cast<const std::byte*>(value->Value.bin.lpb);
    return EntryId(bytes, bytes + value->Value.bin.cb);
}
