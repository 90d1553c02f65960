#include "quorvex/ItemTableCursor.h"

#include "quorvex/MapiTags.h"
#include "quorvex/PropVariant.h"
#include "quorvex/PropertyReader.h"

#include <mapitags.h>

#include <utility>

namespace
{
bool IsEntryIdColumn(ULONG columnTag)
{
    return columnTag == PR_ENTRYID || columnTag == tag::longTermEntryIdFromTable;
}
}    // namespace

ItemTableCursor::ItemTableCursor(std::shared_ptr<FolderSnapshot> rows)
    : snapshot(std::move(rows)),
      columns{PR_ENTRYID}
{
}

void ItemTableCursor::SetColumns(std::vector<ULONG> tags)
{
    const std::lock_guard lock(mutex);
    columns = std::move(tags);
}

std::vector<_variant_t> ItemTableCursor::Row()
{
    const std::lock_guard lock(mutex);
    std::vector<_variant_t> values(columns.size());
    bool isComplete = true;
    for (std::size_t index = 0; index < columns.size(); ++index)
        if (IsEntryIdColumn(columns[index]))
            values[index] = EntryIdColumn(columns[index], currentRow);
        else
            isComplete = false;
    if (!isComplete)
        FillFromMessage(values, currentRow);
    return values;
}

_variant_t ItemTableCursor::EntryIdColumn(ULONG columnTag, std::size_t row)
{
    if (columnTag == tag::longTermEntryIdFromTable)
        if (const EntryIdBytes id = snapshot->LongTermEntryId(row); !id.empty())
            return BinaryVariant(id);
    // A store that tells no long-term ids apart has only such.
    return BinaryVariant(snapshot->EntryId(row));
}

void ItemTableCursor::FillFromMessage(std::vector<_variant_t>& values, std::size_t row)
{
    const auto message = snapshot->OpenMessage(row);
    const PropertyValues properties(message.Get(), columns);
    for (std::size_t index = 0; index < columns.size(); ++index)
        if (!IsEntryIdColumn(columns[index]))
            values[index] = properties.Variant(index);
}

bool ItemTableCursor::FindFirst(const RestrictionNode* restriction, bool forward)
{
    const std::lock_guard lock(mutex);
    return Search(restriction, forward);
}

bool ItemTableCursor::FindNext(const RestrictionNode* restriction, bool forward)
{
    const std::lock_guard lock(mutex);
    if (!matches)
        return Search(restriction, forward);
    if (!forward)
        return currentMatch > 0 && MoveTo(currentMatch - 1);
    return MoveTo(currentMatch + 1);
}

void ItemTableCursor::Reset()
{
    const std::lock_guard lock(mutex);
    matches.reset();
}

bool ItemTableCursor::Search(const RestrictionNode* restriction, bool forward)
{
    matches.reset();
    matches = snapshot->Search(restriction ? ToRestriction(*restriction) : Restriction());
    return !matches->empty() && MoveTo(forward ? 0 : matches->size() - 1);
}

bool ItemTableCursor::MoveTo(std::size_t match)
{
    if (match >= matches->size())
        return false;
    currentMatch = match;
    currentRow = (*matches)[match];
    return true;
}
