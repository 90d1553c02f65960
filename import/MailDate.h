#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// FILETIME: 100 ns since 1601-01-01 UTC.
using FileTime = int64_t;

FileTime FileTimeFromUnix(int64_t seconds);

// Reads the date of a Date or Received header or of an mbox separator, leniently: the parts may stand in any
// usual order, the weekday is not looked at, comments are passed over, years may have two digits. A time
// without a zone, or with one that nobody knows, is UTC. Empty when no day, month and year can be read or one
// is out of range.
std::optional<FileTime> ParseMailDate(std::string_view text);
