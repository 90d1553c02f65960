#include "localmapi/MapiTable.h"

#include "localmapi/Arguments.h"
#include "localmapi/ComBoundary.h"
#include "localmapi/ComObject.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/TableRows.h"

#include <mapitags.h>

#include <algorithm>
#include <limits>

namespace
{
ULONG AsCount(std::size_t count)
{
    return static_cast<ULONG>(std::min<std::size_t>(count, std::numeric_limits<LONG>::max()));
}

class CMapiTable final : public ComObject<IMAPITable, IID_IMAPITable>
{
public:
    explicit CMapiTable(std::unique_ptr<TableSource> source)
        : rows(std::move(source)),
          defaultColumns(rows.Source().DefaultColumns()),
          columns(defaultColumns)
    {
    }

    STDMETHODIMP GetLastError(HRESULT result, ULONG flags, LPMAPIERROR* error) noexcept override;
    STDMETHODIMP Advise(ULONG, LPMAPIADVISESINK, ULONG*) noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP Unadvise(ULONG) noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP GetStatus(ULONG* status, ULONG* type) noexcept override;
    STDMETHODIMP SetColumns(LPSPropTagArray tags, ULONG flags) noexcept override;
    STDMETHODIMP QueryColumns(ULONG flags, LPSPropTagArray* tags) noexcept override;
    STDMETHODIMP GetRowCount(ULONG flags, ULONG* count) noexcept override;
    STDMETHODIMP SeekRow(BOOKMARK origin, LONG rowCount, LONG* rowsSought) noexcept override;
    STDMETHODIMP SeekRowApprox(ULONG numerator, ULONG denominator) noexcept override;
    STDMETHODIMP QueryPosition(ULONG* row, ULONG* numerator, ULONG* denominator) noexcept override;
    STDMETHODIMP FindRow(LPSRestriction restriction, BOOKMARK origin, ULONG flags) noexcept override;
    STDMETHODIMP Restrict(LPSRestriction restriction, ULONG flags) noexcept override;
    STDMETHODIMP CreateBookmark(BOOKMARK* bookmark) noexcept override;
    STDMETHODIMP FreeBookmark(BOOKMARK bookmark) noexcept override;
    STDMETHODIMP SortTable(LPSSortOrderSet criteria, ULONG flags) noexcept override;
    STDMETHODIMP QuerySortOrder(LPSSortOrderSet* criteria) noexcept override;
    STDMETHODIMP QueryRows(LONG rowCount, ULONG flags, LPSRowSet* rowSet) noexcept override;
    STDMETHODIMP Abort() noexcept override { return S_OK; }    // nothing runs on between two calls
    STDMETHODIMP ExpandRow(ULONG, LPBYTE, ULONG, ULONG, LPSRowSet* rowSet, ULONG*) noexcept override
    {
        return NoSupport(rowSet);
    }
    STDMETHODIMP CollapseRow(ULONG, LPBYTE, ULONG, ULONG*) noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP WaitForCompletion(ULONG flags, ULONG timeout, ULONG* status) noexcept override;
    STDMETHODIMP GetCollapseState(ULONG, ULONG, LPBYTE, ULONG*, LPBYTE* state) noexcept override
    {
        return NoSupport(state);
    }
    STDMETHODIMP SetCollapseState(ULONG, ULONG, LPBYTE, BOOKMARK*) noexcept override
    {
        return MAPI_E_NO_SUPPORT;
    }

private:
    // Every method but the refused ones: one thread at a time, failures as HRESULTs.
    template <typename Action>
    HRESULT Guarded(Action&& action) noexcept
    {
        return ComBoundary(lastError,
                           [&]
                           {
                               const std::lock_guard lock(mutex);
                               return action();
                           });
    }

    RowSet ReadRowSet(const std::vector<std::int64_t>& ids);
    std::uint32_t ReadableTag(std::uint32_t tag) const;

    LastError lastError;
    std::mutex mutex;    // guards all below
    TableRows rows;
    const std::vector<std::uint32_t> defaultColumns;
    std::vector<std::uint32_t> columns;
};

STDMETHODIMP CMapiTable::GetLastError(HRESULT result, ULONG flags, LPMAPIERROR* error) noexcept
{
    return lastError.Get(result, flags, error);
}

STDMETHODIMP CMapiTable::GetStatus(ULONG* status, ULONG* type) noexcept
{
    if (!status || !type)
        return MAPI_E_INVALID_PARAMETER;
    *status = TBLSTAT_COMPLETE;
    *type = TBLTYPE_SNAPSHOT;
    return S_OK;
}

STDMETHODIMP CMapiTable::SetColumns(LPSPropTagArray tags, ULONG flags) noexcept
{
    return Guarded(
        [&]
        {
            const SPropTagArray& given = Given(tags);
            RequireKnownFlags(flags, TBL_ASYNC | TBL_BATCH);
            if (given.cValues == 0)
                throw MapiError(MAPI_E_INVALID_PARAMETER);
            columns.assign(given.aulPropTag, given.aulPropTag + given.cValues);
        });
}

STDMETHODIMP CMapiTable::QueryColumns(ULONG flags, LPSPropTagArray* tags) noexcept
{
    return Guarded(
        [&]
        {
            Given(tags) = nullptr;
            RequireKnownFlags(flags, TBL_ALL_COLUMNS);
            const auto& asked = flags & TBL_ALL_COLUMNS ? defaultColumns : columns;
            auto array = MakeMapiBuffer<SPropTagArray>(CbNewSPropTagArray(asked.size()));
            array->cValues = static_cast<ULONG>(asked.size());
            std::ranges::copy(asked, array->aulPropTag);
            *tags = array.release();    // now the caller's
        });
}

STDMETHODIMP CMapiTable::GetRowCount(ULONG flags, ULONG* count) noexcept
{
    return Guarded(
        [&]
        {
            Given(count) = 0;
            RequireKnownFlags(flags, TBL_NOWAIT);
            *count = AsCount(rows.Count());
        });
}

STDMETHODIMP CMapiTable::SeekRow(BOOKMARK origin, LONG rowCount, LONG* rowsSought) noexcept
{
    return Guarded(
        [&]
        {
            const LONG moved = rows.Seek(origin, rowCount);
            if (rowsSought)
                *rowsSought = moved;
        });
}

STDMETHODIMP CMapiTable::SeekRowApprox(ULONG numerator, ULONG denominator) noexcept
{
    return Guarded([&] { rows.SeekFraction(numerator, denominator); });
}

STDMETHODIMP CMapiTable::QueryPosition(ULONG* row, ULONG* numerator, ULONG* denominator) noexcept
{
    return Guarded(
        [&]
        {
            Given(row) = Given(numerator) = AsCount(rows.Position());
            // Never zero, so that callers can divide by it.
            Given(denominator) = std::max<ULONG>(AsCount(rows.Count()), 1);
        });
}

STDMETHODIMP CMapiTable::FindRow(LPSRestriction restriction, BOOKMARK origin, ULONG flags) noexcept
{
    return Guarded(
        [&]
        {
            RequireKnownFlags(flags, DIR_BACKWARD);
            rows.Find(Restriction(Given(restriction)), origin, (flags & DIR_BACKWARD) != 0);
        });
}

STDMETHODIMP CMapiTable::Restrict(LPSRestriction restriction, ULONG flags) noexcept
{
    return Guarded(
        [&]
        {
            RequireKnownFlags(flags, TBL_ASYNC | TBL_BATCH);
            rows.Restrict(restriction ? std::optional(Restriction(*restriction)) : std::nullopt);
        });
}

STDMETHODIMP CMapiTable::CreateBookmark(BOOKMARK* bookmark) noexcept
{
    return Guarded(
        [&]
        {
            Given(bookmark) = BOOKMARK_BEGINNING;
            *bookmark = rows.CreateBookmark();
        });
}

STDMETHODIMP CMapiTable::FreeBookmark(BOOKMARK bookmark) noexcept
{
    return Guarded([&] { rows.FreeBookmark(bookmark); });
}

STDMETHODIMP CMapiTable::SortTable(LPSSortOrderSet criteria, ULONG flags) noexcept
{
    return Guarded(
        [&]
        {
            const SSortOrderSet& given = Given(criteria);
            RequireKnownFlags(flags, TBL_ASYNC | TBL_BATCH);
            if (given.cCategories > 0)
                throw MapiError(MAPI_E_TOO_COMPLEX);
            rows.Sort({given.aSort, given.aSort + given.cSorts});
        });
}

STDMETHODIMP CMapiTable::QuerySortOrder(LPSSortOrderSet* criteria) noexcept
{
    return Guarded(
        [&]
        {
            Given(criteria) = nullptr;
            const std::vector<SSortOrder>& order = rows.SortOrder();
            auto set = MakeMapiBuffer<SSortOrderSet>(CbNewSSortOrderSet(order.size()));
            set->cSorts = static_cast<ULONG>(order.size());
            std::ranges::copy(order, set->aSort);
            *criteria = set.release();    // now the caller's
        });
}

STDMETHODIMP CMapiTable::QueryRows(LONG rowCount, ULONG flags, LPSRowSet* rowSet) noexcept
{
    return Guarded(
        [&]
        {
            Given(rowSet) = nullptr;
            RequireKnownFlags(flags, TBL_NOADVANCE);
            // The position must not move past rows that could not be read.
            RowSet read = ReadRowSet(rows.Take(rowCount, true));
            if (!(flags & TBL_NOADVANCE))
                rows.Seek(BOOKMARK_CURRENT, rowCount);
            *rowSet = read.release();    // now the caller's
        });
}

STDMETHODIMP CMapiTable::WaitForCompletion(ULONG, ULONG, ULONG* status) noexcept
{
    if (status)
        *status = TBLSTAT_COMPLETE;
    return S_OK;
}

// The tag by which the source knows a column: a type left open is the one the default column has.
std::uint32_t CMapiTable::ReadableTag(std::uint32_t tag) const
{
    if (PROP_TYPE(tag) != PT_UNSPECIFIED)
        return StoredTag(tag);
    const auto found =
        std::ranges::find(defaultColumns, PROP_ID(tag), [](std::uint32_t column) { return PROP_ID(column); });
    return found == defaultColumns.end() ? tag : StoredTag(*found);
}

RowSet CMapiTable::ReadRowSet(const std::vector<std::int64_t>& ids)
{
    std::vector<std::uint32_t> tags;
    std::ranges::transform(columns, std::back_inserter(tags),
                           [&](std::uint32_t tag) { return ReadableTag(tag); });
    const std::vector<StoredValue> values = rows.Source().ReadRows(ids, tags);
    RowSet rowSet = MakeRowSet(ids.size());
    for (std::size_t row = 0; row < ids.size(); ++row)
    {
        auto properties = MakeMapiBuffer<SPropValue>(columns.size() * sizeof(SPropValue));
        for (std::size_t column = 0; column < columns.size(); ++column)
        {
            const bool typeLeftOpen = PROP_TYPE(columns[column]) == PT_UNSPECIFIED;
            FillPropValue(properties.get()[column], typeLeftOpen ? tags[column] : columns[column],
                          values[row * tags.size() + column], properties.get());
        }
        rowSet->aRow[row] = {0, static_cast<ULONG>(columns.size()), properties.release()};
        ++rowSet->cRows;
    }
    return rowSet;
}
}    // namespace

Microsoft::WRL::ComPtr<IMAPITable> MakeMapiTable(std::unique_ptr<TableSource> source)
{
    return MakeObject<CMapiTable>(std::move(source));
}
