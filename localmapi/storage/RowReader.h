#pragma once

#include "localmapi/storage/Database.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// How the rows of one table answer property tags.
struct RowReaderPlan
{
    std::string (*expressionOf)(std::uint32_t tag);    // SQL; "NULL" for what the rows never have
    std::string joins;                                 // appended to "FROM <table> AS r"
    std::string table;                                 // its INTEGER PRIMARY KEY is `id`
    std::string condition;                             // which rows belong, with no parameter; may be empty
};

// Reads the rows named, in one statement: values[row * tags.size() + column]. A row that is not there, or
// does not meet the condition, has monostate everywhere.
std::vector<StoredValue> ReadRowsById(Database& database, const RowReaderPlan& plan,
                                      std::span<const std::int64_t> ids, std::span<const std::uint32_t> tags);
