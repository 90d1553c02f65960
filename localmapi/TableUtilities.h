#pragma once

#include "localmapi/MapiMemory.h"

#include <windows.h>

#include <mapidefs.h>

// All rows of `table` in one set: with the columns, the restriction and the order given, where they are not
// null, and at most `rowLimit` rows unless that is 0. More rows than that are MAPI_E_TABLE_TOO_BIG. Throws
// MapiError.
RowSet QueryAllRows(IMAPITable& table, SPropTagArray* columns, SRestriction* restriction,
                    SSortOrderSet* order, LONG rowLimit);
