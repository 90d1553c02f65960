#include "quorvex/AutomationDate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <mutex>

namespace
{
constexpr std::int64_t ticksPerMillisecond = 10'000;
constexpr std::int64_t millisecondsPerDay = 86'400'000;
constexpr std::int64_t millisecondsPerMinute = 60'000;
constexpr std::int64_t daysFrom1601To1899 =
    109'205;                                   // 1601-01-01 to 1899-12-30, where automation dates start
constexpr std::int64_t firstDay = -657'434;    // 0100-01-01
constexpr std::int64_t lastDay = 2'958'465;    // 9999-12-31

// Milliseconds since 1601-01-01, of a clock at Greenwich or of the local one.
using Milliseconds = std::int64_t;

Milliseconds MillisecondsOf(const FILETIME& time) noexcept
{
    const auto ticks =
        static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    return ticks / ticksPerMillisecond + (ticks % ticksPerMillisecond >= ticksPerMillisecond / 2 ? 1 : 0);
}

FILETIME FileTimeOf(Milliseconds time) noexcept
{
    const auto ticks = static_cast<std::uint64_t>(std::max<Milliseconds>(time, 0) * ticksPerMillisecond);
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// Systems know the rules of each year only of zones that they have a name for; of another one, the present
// year's.
bool ReadRules(WORD year, TIME_ZONE_INFORMATION& zone) noexcept
{
    return GetTimeZoneInformationForYear(year, nullptr, &zone) ||
           GetTimeZoneInformation(&zone) != TIME_ZONE_ID_INVALID;
}

// The rules of the years last asked for. The system looks them up in the registry, which takes longer than
// all the rest together; they are taken afresh now and then, since a user may move to another zone.
class ZoneRules
{
public:
    bool Find(WORD year, TIME_ZONE_INFORMATION& zone) noexcept
    {
        const std::lock_guard lock(mutex);
        Rules& rules = kept[year % kept.size()];
        const ULONGLONG now = GetTickCount64();
        if (rules.year != year || now - rules.readAt > timeToKeep)
        {
            if (!ReadRules(year, rules.zone))
                return false;
            rules.year = year;
            rules.readAt = now;
        }
        zone = rules.zone;
        return true;
    }

private:
    static constexpr ULONGLONG timeToKeep = 10'000;

    struct Rules
    {
        WORD year = 0;
        ULONGLONG readAt = 0;
        TIME_ZONE_INFORMATION zone;
    };

    std::mutex mutex;
    std::array<Rules, 64> kept;
};

bool RulesOf(Milliseconds time, SYSTEMTIME& fields, TIME_ZONE_INFORMATION& zone) noexcept
{
    static ZoneRules rules;
    const FILETIME fileTime = FileTimeOf(time);
    return FileTimeToSystemTime(&fileTime, &fields) && rules.Find(fields.wYear, zone);
}

Milliseconds LocalOf(Milliseconds utc) noexcept
{
    SYSTEMTIME utcFields, localFields;
    TIME_ZONE_INFORMATION zone;
    FILETIME local;
    if (!RulesOf(utc, utcFields, zone) || !SystemTimeToTzSpecificLocalTime(&zone, &utcFields, &localFields) ||
        !SystemTimeToFileTime(&localFields, &local))
        return utc;
    return MillisecondsOf(local);
}

Milliseconds UtcOf(Milliseconds local) noexcept
{
    SYSTEMTIME fields;
    TIME_ZONE_INFORMATION zone;
    if (!RulesOf(local, fields, zone))
        return local;
    const Milliseconds withStandard = local + (zone.Bias + zone.StandardBias) * millisecondsPerMinute;
    const Milliseconds withDaylight = local + (zone.Bias + zone.DaylightBias) * millisecondsPerMinute;
    for (const Milliseconds utc :
         {std::min(withStandard, withDaylight), std::max(withStandard, withDaylight)})
        if (LocalOf(utc) == local)
            return utc;
    return withStandard;    // skipped by the clocks
}
}    // namespace

DATE LocalDateFromUtc(const FILETIME& utc) noexcept
{
    const Milliseconds local = LocalOf(MillisecondsOf(utc));
    const Milliseconds sinceStart = local - daysFrom1601To1899 * millisecondsPerDay;
    Milliseconds day = sinceStart / millisecondsPerDay;
    Milliseconds inDay = sinceStart % millisecondsPerDay;
    if (inDay < 0)
    {
        --day;
        inDay += millisecondsPerDay;
    }
    if (day < firstDay || day > lastDay)
        return noDate;
    // Before 1899-12-30 the whole number counts down and the fraction still counts the hours up.
    const double fraction = static_cast<double>(inDay) / millisecondsPerDay;
    return static_cast<double>(day) + (day < 0 ? -fraction : fraction);
}

FILETIME UtcFromLocalDate(DATE local) noexcept
{
    if (std::isnan(local))
        local = noDate;
    const double inRange = std::clamp(local, static_cast<double>(firstDay), lastDay + 1.0);
    const double day = std::trunc(inRange);
    const double inDay = std::round(std::abs(inRange - day) * millisecondsPerDay);
    const Milliseconds sinceStart =
        static_cast<Milliseconds>(day) * millisecondsPerDay + static_cast<Milliseconds>(inDay);
    const Milliseconds sinceMapiStart = sinceStart + daysFrom1601To1899 * millisecondsPerDay;
    return FileTimeOf(sinceMapiStart < 0 ? 0 : UtcOf(sinceMapiStart));
}
