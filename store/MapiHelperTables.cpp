#include "store/MapiHelperTables.h"

RowSet QueryAllRows(const MapiLibrary& library, IMAPITable* table, SPropTagArray* columns) noexcept
{
    if (!library.hrQueryAllRows)
        return {};
    SRowSet* read = nullptr;
    const HRESULT result = library.hrQueryAllRows(table, columns, nullptr, nullptr, 0, &read);
    RowSet rows(read, {library.mapiFreeBuffer});
    if (FAILED(result))
        rows.reset();
    return rows;
}

const SPropValue* FindColumn(const SRow& row, ULONG column, ULONG tag) noexcept
{
    if (column >= row.cValues || !row.lpProps || row.lpProps[column].ulPropTag != tag)
        return nullptr;
    return &row.lpProps[column];
}
