#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <map>
#include <optional>

// Whole seconds since 1970-01-01 UTC.
using UnixSeconds = std::int64_t;

UnixSeconds CurrentUnixSeconds() noexcept;

// A zone's rules for local time. The system decides about daylight saving, by its rules for the year in
// question and not by the C runtime's: that knows only the present year's and reads a Unix zone name in the
// variable TZ as its own kind. A local time that the clock leaves out or shows twice is taken as the system
// takes it; one left out comes back as a time one change of the clock away. Keeps the rules it has looked up:
// one thread at a time.
class TimeZone
{
public:
    TimeZone() = default;    // the system's present zone
    explicit TimeZone(const TIME_ZONE_INFORMATION& rules)
        : everyYear(rules) {}    // the same rules for every year

    // Local calendar time, without milliseconds; nothing when the instant cannot be expressed.
    std::optional<SYSTEMTIME> ToLocal(UnixSeconds instant) const;
    // Milliseconds are dropped; nothing when it is no calendar time.
    std::optional<UnixSeconds> ToInstant(const SYSTEMTIME& local) const;

private:
    const TIME_ZONE_INFORMATION* RulesOf(WORD year) const;

    std::optional<TIME_ZONE_INFORMATION> everyYear;
    mutable std::map<WORD, TIME_ZONE_INFORMATION> rulesByYear;
};

// An automation date in local time. Invalid when the instant has no local calendar time, or when the date
// does not give the same second back.
struct LocalDate
{
    DATE value = 0;
    bool valid = false;
};

LocalDate ToLocalDate(UnixSeconds instant, const TimeZone& zone);

// The calendar fields of an automation date, rounded to seconds; nothing when it is out of range.
std::optional<SYSTEMTIME> CalendarOf(DATE date);
