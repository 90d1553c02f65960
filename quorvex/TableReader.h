#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <functional>
#include <span>
#include <vector>

// One row of a table by the columns that were asked for, in their order; null for a column that the table
// refuses or has no value of the asked type for. Lives for the call that it is handed to.
using TableRow = std::span<const SPropValue* const>;

// Reads all rows of a table just opened, in its order and in large batches. The first `required` columns must
// be had; a table that refuses others is read without them. Throws MapiError, also for a value of a required
// column that is there but cannot be read, and what `take` throws.
void ReadRows(IMAPITable* table, std::span<const ULONG> columns, std::size_t required,
              const std::function<void(TableRow)>& take);

// True for a table's text that is certainly whole: tables may cut what is longer.
bool IsWholeText(const SPropValue& value) noexcept;
