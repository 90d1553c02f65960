#pragma once

#include "quorvex/FolderSnapshot.h"
#include "quorvex/RestrictionTree.h"

#include <windows.h>

#include <comutil.h>
#include <mapidefs.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

// Where an item table stands: its columns, its current row and what its filter last found. Shared by the
// table's automation object and its filter's. Any thread. Throws MapiError.
class ItemTableCursor
{
public:
    explicit ItemTableCursor(std::shared_ptr<FolderSnapshot> snapshot);

    void SetColumns(std::vector<ULONG> tags);

    // The values of the current row, one for each column: the row found last, before any search the first
    // one.
    std::vector<_variant_t> Row();

    // Searches all rows and moves to the first match, or to the last one when not `forward`; false when there
    // is none, and the current row stays. Without a restriction every row matches.
    bool FindFirst(const RestrictionNode* restriction, bool forward);

    // Moves on among the matches of that search; false at their end. Before any search it is FindFirst.
    bool FindNext(const RestrictionNode* restriction, bool forward);

    // Forgets the search.
    void Reset();

private:
    bool MoveTo(std::size_t match);
    bool Search(const RestrictionNode* restriction, bool forward);
    _variant_t EntryIdColumn(ULONG columnTag, std::size_t row);
    void FillFromMessage(std::vector<_variant_t>& values, std::size_t row);

    const std::shared_ptr<FolderSnapshot> snapshot;

    std::mutex mutex;    // guards what follows
    std::vector<ULONG> columns;
    std::size_t currentRow = 0;
    std::optional<std::vector<std::uint32_t>> matches;    // of the last search
    std::size_t currentMatch = 0;
};
