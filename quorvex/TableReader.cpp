#include "quorvex/TableReader.h"

#include "quorvex/MapiError.h"
#include "quorvex/MapiOwners.h"
#include "quorvex/PropertyReader.h"

#include <mapicode.h>

#include <cwchar>

namespace
{
constexpr LONG batchSize = 1000;

// MAPI lets a table give no more than this of a text, its terminator included.
constexpr std::size_t tableTextLimit = 256;

HRESULT SetColumns(IMAPITable* table, std::span<const ULONG> columns)
{
    TagArray tags(columns);
    return table->SetColumns(tags.get(), 0);
}

// Sets the columns, leaving out those that the table refuses; returns the places of the ones that are set.
std::vector<std::size_t> SetColumnsItHas(IMAPITable* table, std::span<const ULONG> columns,
                                         std::size_t required)
{
    std::vector<std::size_t> places;
    std::vector<ULONG> accepted;
    const bool all = SUCCEEDED(SetColumns(table, columns));
    for (std::size_t place = 0; place < columns.size(); ++place)
    {
        accepted.push_back(columns[place]);
        if (all || place < required || SUCCEEDED(SetColumns(table, accepted)))
            places.push_back(place);
        else
            accepted.pop_back();
    }
    if (!all)
        CheckMapi(SetColumns(table, accepted), table, L"set the columns of a table");
    return places;
}

class RowReader
{
public:
    RowReader(std::span<const ULONG> asked, std::size_t needed, std::vector<std::size_t> set)
        : columns(asked),
          required(needed),
          places(std::move(set)),
          values(asked.size())
    {
    }

    TableRow Read(const SRow& row)
    {
        for (std::size_t index = 0; index < places.size() && index < row.cValues; ++index)
        {
            const SPropValue& value = row.lpProps[index];
            const std::size_t place = places[index];
            values[place] = value.ulPropTag == columns[place] ? &value : nullptr;
            if (place < required)
                CheckReadable(value, columns[place]);
        }
        return values;
    }

private:
    // A value that is there and could not be read must not pass for one that is not there. A text may be too
    // long for a table.
    static void CheckReadable(const SPropValue& value, ULONG column)
    {
        const bool tooLong = PROP_TYPE(column) == PT_UNICODE && value.Value.err == MAPI_E_NOT_ENOUGH_MEMORY;
        if (PROP_TYPE(value.ulPropTag) == PT_ERROR && !MeansAbsent(value.Value.err) && !tooLong)
            ThrowMapiError(value.Value.err, nullptr, L"read the rows of a table");
    }

    std::span<const ULONG> columns;
    std::size_t required;
    std::vector<std::size_t> places;
    std::vector<const SPropValue*> values;
};
}    // namespace

void ReadRows(IMAPITable* table, std::span<const ULONG> columns, std::size_t required,
              const std::function<void(TableRow)>& take)
{
    RowReader reader(columns, required, SetColumnsItHas(table, columns, required));
    for (;;)
    {
        RowSet rows;
        CheckMapi(table->QueryRows(batchSize, 0, rows.put()), table, L"read the rows of a table");
        if (!rows || rows->cRows == 0)
            return;
        for (const SRow& row : std::span(rows->aRow, rows->cRows))
            take(reader.Read(row));
    }
}

bool IsWholeText(const SPropValue& value) noexcept
{
    return PROP_TYPE(value.ulPropTag) == PT_UNICODE &&
           wcsnlen(value.Value.lpszW, tableTextLimit) < tableTextLimit - 1;
}
