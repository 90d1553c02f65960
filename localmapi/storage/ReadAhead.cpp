#include "localmapi/storage/ReadAhead.h"

#include "localmapi/storage/MessageColumns.h"
#include "localmapi/storage/StoreError.h"

#include <algorithm>
#include <string>

namespace
{
constexpr std::size_t largestBatch = 128;
constexpr std::size_t mostBytes = 1 << 20;    // of long texts in a batch

// Who walks through a folder passes over so many of its messages at most.
constexpr std::int64_t largestStep = 8;

std::string SelectList(std::size_t columnCount)
{
    std::string list = "SELECT ";
    for (const MessageColumn& column : MessageColumns().first(columnCount))
        list += std::string(&column == MessageColumns().data() ? "" : ", ") + column.expression;
    return list + " FROM message AS r";
}

SharedRecord RecordOf(const Statement& statement, std::size_t columnCount)
{
    auto record = std::make_shared<MessageRecord>();
    record->values.reserve(columnCount);
    for (std::size_t column = 0; column < columnCount; ++column)
        record->values.push_back(statement.Value(static_cast<int>(column)));
    if (!std::holds_alternative<std::int64_t>(*record->Find(tag::storedFolderId)))
        throw StoreError(StoreFault::NotAStore, "The mail store is damaged: a message lies in no folder.");
    return record;
}

SharedRecord ReadAlone(Database& database, std::int64_t id)
{
    static const std::string sql = SelectList(ShortColumnCount()) + " WHERE r.id = ?";
    Statement statement = database.Prepare(sql);
    return statement.Bind(1, id).Step() ? RecordOf(statement, ShortColumnCount()) : nullptr;
}

// Whether the message follows upon the other one in its folder, but for a few.
bool IsNextAfter(Database& database, const MessageRecord& last, std::int64_t id)
{
    if (id <= last.Id())
        return false;
    Statement between = database.Prepare(
        "SELECT count(*) FROM (SELECT 1 FROM message WHERE folder_id = ? AND id > ? AND id <= ? LIMIT ?)");
    between.Bind(1, last.FolderId()).Bind(2, last.Id()).Bind(3, id).Bind(4, largestStep + 1).Step();
    return between.Integer(0) <= largestStep;
}

std::size_t TextSize(const MessageRecord& record)
{
    std::size_t size = 0;
    for (std::size_t column = ShortColumnCount(); column < record.values.size(); ++column)
        if (const auto* text = std::get_if<std::string>(&record.values[column]))
            size += text->size();
    return size;
}
}    // namespace

bool MessageRecord::HasTexts() const
{
    return values.size() > ShortColumnCount();
}

const StoredValue* MessageRecord::Find(std::uint32_t tag) const
{
    const MessageColumn* column = FindMessageColumn(tag);
    const auto place = static_cast<std::size_t>(column ? column - MessageColumns().data() : 0);
    return column && place < values.size() ? &values[place] : nullptr;
}

std::int64_t MessageRecord::Id() const
{
    return std::get<std::int64_t>(*Find(tag::storedMessageId));
}

std::int64_t MessageRecord::FolderId() const
{
    return std::get<std::int64_t>(*Find(tag::storedFolderId));
}

SharedRecord ReadAhead::Read(Database& database, std::int64_t id)
{
    ForgetWhatHasChanged(database);
    if (SharedRecord record = Take(id))
        return record;
    if (Walk* walk = FindWalkTo(database, id))
        if (SharedRecord record = ReadOn(database, *walk, id))
            return record;
    return StartWalk(ReadAlone(database, id));
}

void ReadAhead::ForgetWhatHasChanged(Database& database)
{
    const std::optional<ChangeStamp> current = database.CurrentStamp();
    // Where messages are changed as they are opened, nothing that is read ahead is ever used: the walks start
    // anew.
    if (!current || current != stamp)
        walks = {};
    stamp = current;
}

SharedRecord ReadAhead::Take(std::int64_t id)
{
    for (Walk& walk : walks)
    {
        const auto found = std::ranges::lower_bound(walk.batch, id, {}, &MessageRecord::Id);
        if (found == walk.batch.end() || (*found)->Id() != id)
            continue;
        ++walk.used;
        walk.lastUse = ++uses;
        return *found;
    }
    return nullptr;
}

ReadAhead::Walk* ReadAhead::FindWalkTo(Database& database, std::int64_t id)
{
    const auto found = std::ranges::find_if(
        walks, [&](const Walk& walk)
        { return !walk.batch.empty() && IsNextAfter(database, *walk.batch.back(), id); });
    return found == walks.end() ? nullptr : &*found;
}

// Null when the message has gone, or lies in another folder.
SharedRecord ReadAhead::ReadOn(Database& database, Walk& walk, std::int64_t id)
{
    static const std::size_t columnCount = MessageColumns().size();
    static const std::string sql =
        SelectList(columnCount) +
        " LEFT JOIN message_text AS t ON t.message_id = r.id WHERE r.folder_id = ? AND "
        "r.id >= ? ORDER BY r.id LIMIT ?";
    const std::size_t before = walk.batch.size();
    const bool wasWorthIt = walk.used * 3 >= before;
    const std::size_t size = std::clamp<std::size_t>(wasWorthIt ? before * 2 : before / 2, 2, largestBatch);
    Statement statement = database.Prepare(sql);
    statement.Bind(1, walk.batch.back()->FolderId()).Bind(2, id).Bind(3, static_cast<std::int64_t>(size));
    walk = {};
    for (std::size_t bytes = 0; bytes < mostBytes && statement.Step(); bytes += TextSize(*walk.batch.back()))
        walk.batch.push_back(RecordOf(statement, columnCount));
    return Take(id);
}

SharedRecord ReadAhead::StartWalk(SharedRecord record)
{
    if (record)
        *std::ranges::min_element(walks, {}, &Walk::lastUse) = {{record}, 1, ++uses};
    return record;
}
