#pragma once

#include "localmapi/Restriction.h"
#include "localmapi/TableSource.h"

#include <windows.h>

#include <mapidefs.h>

#include <map>
#include <optional>

// Which rows a table shows, in which order and where it stands in them: the part of CMapiTable that knows
// nothing of COM. Used by one thread at a time; refusals are MapiError's.
class TableRows
{
public:
    explicit TableRows(std::unique_ptr<TableSource> source);

    TableSource& Source() { return *source; }

    std::size_t Count();
    std::size_t Position() const { return position; }    // from 0; Count() behind the last row

    // Moves by `rowCount` from the bookmark, as far as there are rows. Gives how far it moved.
    LONG Seek(BOOKMARK origin, LONG rowCount);
    void SeekFraction(ULONG numerator, ULONG denominator);

    // The next rows, at most `rowCount`, for a negative count those before the position; moves behind or to
    // the first of them, unless told to stay.
    std::vector<std::int64_t> Take(LONG rowCount, bool stay);

    // Goes to the next row, the one at `origin` included, that meets the restriction; throws
    // MAPI_E_NOT_FOUND, and stays, when there is none.
    void Find(const Restriction& restriction, BOOKMARK origin, bool backward);

    void Restrict(std::optional<Restriction> newRestriction);    // none shows all rows
    void Sort(std::vector<SSortOrder> newOrder);                 // none gives the source's own order
    const std::vector<SSortOrder>& SortOrder() const { return order; }

    BOOKMARK CreateBookmark();
    void FreeBookmark(BOOKMARK bookmark);

private:
    const std::vector<std::int64_t>& Rows();
    void SortRows(std::vector<std::int64_t>& ids);
    std::size_t PositionOf(BOOKMARK bookmark);
    void StartOver();

    std::unique_ptr<TableSource> source;
    std::optional<Restriction> restriction;
    std::vector<SSortOrder> order;
    std::optional<std::vector<std::int64_t>> rows;    // none before the first use
    std::size_t position = 0;
    std::map<BOOKMARK, std::size_t> bookmarks;
    BOOKMARK nextBookmark = BOOKMARK_END + 1;
};
