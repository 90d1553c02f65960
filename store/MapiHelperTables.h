#pragma once

#include "store/MapiLibrary.h"
#include "store/MapiOwners.h"

#include <windows.h>

#include <mapidefs.h>

// All rows of the table with those columns. Null when the library cannot read a whole table, or when reading
// it fails.
RowSet QueryAllRows(const MapiLibrary& library, IMAPITable* table, SPropTagArray* columns) noexcept;

// The row's value in that column when it is of the type that `tag` has; null when there is none.
const SPropValue* FindColumn(const SRow& row, ULONG column, ULONG tag) noexcept;
