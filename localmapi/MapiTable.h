#pragma once

#include "localmapi/TableSource.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

// An IMAPITable over the rows of `source`, usable on any thread. It is a snapshot: the rows are taken at the
// first use, and again by Restrict and SortTable, which discard the bookmarks and go to the beginning. Rows
// that vanish meanwhile keep their places, with PT_ERROR in every column.
//
// Where MAPI leaves a choice: QueryRows with a negative count gives the rows before the current position, in
// the table's order, and moves to the first of them; FindRow tests the row at its origin too, backward from
// the end the last row; an absent property meets no test but NOT's; sorting puts absent values first.
// Categories and notifications are not offered.
Microsoft::WRL::ComPtr<IMAPITable> MakeMapiTable(std::unique_ptr<TableSource> source);
