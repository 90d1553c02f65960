#pragma once

#include "store/TableFilter.h"
#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <comutil.h>

// A folder's messages as the rows of a table.
class CItemTable : public COleDispatchDriver
{
public:
    using COleDispatchDriver::COleDispatchDriver;

    void SetColumns(const VARIANT& propTags) const;    // an array of property tags, borrowed
    _variant_t GetRow() const;                         // the current row: an array, one element a column
    CTableFilter GetFilter() const;
};
