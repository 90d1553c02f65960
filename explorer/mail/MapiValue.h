#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using EntryId = std::vector<std::byte>;

// The values of one row or object, in the order in which they were asked for. Each accessor gives nothing (an
// empty text, an empty id) where the store has no such value, or one of another type.
class MapiValues
{
public:
    MapiValues(const SPropValue* values, ULONG count) noexcept : values(values), count(count) {}

    std::wstring Text(ULONG place) const;
    std::optional<LONG> Number(ULONG place) const noexcept;
    std::optional<FILETIME> Time(ULONG place) const noexcept;
    EntryId Id(ULONG place) const;

private:
    const SPropValue* Find(ULONG place, ULONG type) const noexcept;

    const SPropValue* values;    // borrowed
    ULONG count;
};

// Passes an entry id to a call, which only reads it.
inline ENTRYID* AsEntryId(const EntryId& id) noexcept
{
    return reinterpret_cast<ENTRYID*>(const_cast<std::byte*>(id.data()));
}
