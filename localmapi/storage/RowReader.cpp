#include "localmapi/storage/RowReader.h"

#include <algorithm>
#include <functional>

namespace
{
// Whether reading all rows from the first to the last costs little more than reading those named.
bool IsDenseRange(std::span<const std::int64_t> ids)
{
    if (std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()) != ids.end())
        return false;
    // Of ids as far apart as a file may hold them only the unsigned distance is a number.
    const std::uint64_t distance =
        static_cast<std::uint64_t>(ids.back()) - static_cast<std::uint64_t>(ids.front());
    return distance < 4 * static_cast<std::uint64_t>(ids.size());
}

std::string SelectList(const RowReaderPlan& plan, std::span<const std::uint32_t> tags)
{
    std::string list;
    for (const std::uint32_t tag : tags)
        list += ", " + plan.expressionOf(tag);
    return list;
}

std::string JsonArray(std::span<const std::int64_t> ids)
{
    std::string json = "[";
    for (const std::int64_t id : ids)
        json += std::to_string(id) + ",";
    json.back() = ']';
    return json;
}

class RowFiller
{
public:
    RowFiller(std::size_t rowCount, std::size_t columnCount)
        : values(rowCount * columnCount),
          columnCount(columnCount)
    {
    }

    // The statement's first column is no property.
    void Fill(const Statement& statement, std::size_t row)
    {
        for (std::size_t column = 0; column < columnCount; ++column)
            values[row * columnCount + column] = statement.Value(static_cast<int>(column) + 1);
    }

    std::vector<StoredValue> values;

private:
    std::size_t columnCount;
};

std::string Condition(const RowReaderPlan& plan, const std::string& keyword)
{
    return plan.condition.empty() ? std::string() : " " + keyword + " " + plan.condition;
}
}    // namespace

std::vector<StoredValue> ReadRowsById(Database& database, const RowReaderPlan& plan,
                                      std::span<const std::int64_t> ids, std::span<const std::uint32_t> tags)
{
    RowFiller filler(ids.size(), tags.size());
    if (ids.empty() || tags.empty())
        return std::move(filler.values);

    const std::string columns = SelectList(plan, tags);
    if (IsDenseRange(ids))
    {
        Statement statement =
            database.Prepare("SELECT r.id" + columns + " FROM " + plan.table + " AS r" + plan.joins +
                             " WHERE r.id BETWEEN ? AND ?" + Condition(plan, "AND") + " ORDER BY r.id");
        statement.Bind(1, ids.front()).Bind(2, ids.back());
        std::size_t row = 0;
        while (statement.Step())
        {
            const std::int64_t id = statement.Integer(0);
            while (row < ids.size() && ids[row] < id)
                ++row;
            if (row < ids.size() && ids[row] == id)
                filler.Fill(statement, row);
        }
        return std::move(filler.values);
    }

    // CROSS JOIN keeps the list outside: each row is looked up by its key.
    Statement statement =
        database.Prepare("SELECT wanted.key" + columns + " FROM json_each(?) AS wanted CROSS JOIN " +
                         plan.table + " AS r ON r.id = wanted.value" + plan.joins + Condition(plan, "WHERE"));
    statement.Bind(1, StoredValue(JsonArray(ids)));
    while (statement.Step())
        filler.Fill(statement, static_cast<std::size_t>(statement.Integer(0)));
    return std::move(filler.values);
}
