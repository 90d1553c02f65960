#include "localmapi/TableUtilities.h"

#include "localmapi/Arguments.h"

#include <limits>

RowSet QueryAllRows(IMAPITable& table, SPropTagArray* columns, SRestriction* restriction,
                    SSortOrderSet* order, LONG rowLimit)
{
    if (columns)
        ThrowIfFailed(table.SetColumns(columns, TBL_BATCH));
    if (restriction)
        ThrowIfFailed(table.Restrict(restriction, TBL_BATCH));
    if (order)
        ThrowIfFailed(table.SortTable(order, TBL_BATCH));
    ThrowIfFailed(table.SeekRow(BOOKMARK_BEGINNING, 0, nullptr));
    ULONG count = 0;
    ThrowIfFailed(table.GetRowCount(0, &count));
    if (rowLimit > 0 && count > static_cast<ULONG>(rowLimit))
        throw MapiError(MAPI_E_TABLE_TOO_BIG);
    SRowSet* rows = nullptr;
    ThrowIfFailed(table.QueryRows(std::numeric_limits<LONG>::max(), 0, &rows));
    return RowSet(rows);
}
