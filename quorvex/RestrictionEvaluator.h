#pragma once

#include "quorvex/Restriction.h"

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Whatever a restriction can be held against: a message, an attachment, a recipient. A missing text reads as
// empty text, so that what was read can be searched for; any other missing property meets no condition.
class RowValues
{
public:
    virtual ~RowValues() = default;

    virtual std::wstring Text(ULONG tag) = 0;    // whole
    virtual std::optional<std::int64_t> Number(ULONG tag) = 0;
    virtual std::optional<std::vector<std::uint8_t>> Binary(ULONG tag) = 0;
    virtual bool Exists(ULONG tag) = 0;

    // Whether some row of the sub-object table meets the condition.
    virtual bool SomeSubObjectMeets(ULONG table, const Restriction& condition) = 0;

    // Whether the property has that value. A class that knows this without reading the value says so itself.
    virtual bool Equals(const ColumnKey& column, const RestrictionValue& value);
};

// Throws what the row throws when it cannot be read.
bool Meets(const Restriction& restriction, RowValues& row);
