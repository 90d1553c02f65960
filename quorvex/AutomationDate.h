#pragma once

#include <windows.h>

#include <wtypes.h>

// MAPI's times are instants (FILETIME, UTC); automation dates are local times. Both ways the computer's time
// zone is asked for the rules of the year in question, and the result is rounded to whole milliseconds.

// What stands for "no date", as Outlook's object model has it: 1 January 4501. Also the result for a time
// that automation dates cannot hold (before the year 100 or after 9999).
inline constexpr DATE noDate = 949998.0;

DATE LocalDateFromUtc(const FILETIME& utc) noexcept;

// A local time that comes twice when clocks go back means the first of the two; one that clocks skip means as
// much time after the change as it lies behind the change. A date that FILETIME cannot hold becomes the
// nearest one.
FILETIME UtcFromLocalDate(DATE local) noexcept;
