#include "engine/LocalTime.h"

#include <windows.h>

#include <oleauto.h>

namespace
{
constexpr std::int64_t ticksPerSecond = 10'000'000;                   // a FILETIME counts 100 ns
constexpr std::int64_t unixEpochInTicks = 116'444'736'000'000'000;    // 1970-01-01 since 1601-01-01
constexpr UnixSeconds lastSecond = 910'692'730'085;                   // the last that a FILETIME can hold

std::optional<SYSTEMTIME> UtcCalendarOf(UnixSeconds instant)
{
    if (instant < -unixEpochInTicks / ticksPerSecond || instant > lastSecond)
        return std::nullopt;
    const std::int64_t ticks = instant * ticksPerSecond + unixEpochInTicks;
    const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME calendar{};
    return ::FileTimeToSystemTime(&time, &calendar) ? std::optional(calendar) : std::nullopt;
}

std::optional<UnixSeconds> InstantOf(const SYSTEMTIME& utc)
{
    FILETIME time{};
    if (!::SystemTimeToFileTime(&utc, &time))
        return std::nullopt;
    const std::int64_t ticks = (std::int64_t{time.dwHighDateTime} << 32) + time.dwLowDateTime;
    return (ticks - unixEpochInTicks) / ticksPerSecond;
}

bool IsSameSecond(const SYSTEMTIME& left, const SYSTEMTIME& right)
{
    return left.wYear == right.wYear && left.wMonth == right.wMonth && left.wDay == right.wDay &&
           left.wHour == right.wHour && left.wMinute == right.wMinute && left.wSecond == right.wSecond;
}
// The conversions of some systems take a 30th of February for the 1st of March.
bool IsCalendarTime(const SYSTEMTIME& fields)
{
    const std::optional<UnixSeconds> instant = InstantOf(fields);
    const std::optional<SYSTEMTIME> back = instant ? UtcCalendarOf(*instant) : std::nullopt;
    return back && IsSameSecond(fields, *back);
}

// Systems know the rules of each year only of zones that they have a name for; of another one, the present
// year's.
std::optional<TIME_ZONE_INFORMATION> SystemRulesOf(WORD year)
{
    TIME_ZONE_INFORMATION rules{};
    if (::GetTimeZoneInformationForYear(year, nullptr, &rules) ||
        ::GetTimeZoneInformation(&rules) != TIME_ZONE_ID_INVALID)
        return rules;
    return std::nullopt;
}
}    // namespace

UnixSeconds CurrentUnixSeconds() noexcept
{
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    const std::int64_t ticks = (std::int64_t{now.dwHighDateTime} << 32) + now.dwLowDateTime;
    return (ticks - unixEpochInTicks) / ticksPerSecond;
}

const TIME_ZONE_INFORMATION* TimeZone::RulesOf(WORD year) const
{
    if (everyYear)
        return &*everyYear;
    const auto known = rulesByYear.find(year);
    if (known != rulesByYear.end())
        return &known->second;
    const std::optional<TIME_ZONE_INFORMATION> rules = SystemRulesOf(year);
    return rules ? &rulesByYear.emplace(year, *rules).first->second : nullptr;
}

std::optional<SYSTEMTIME> TimeZone::ToLocal(UnixSeconds instant) const
{
    const std::optional<SYSTEMTIME> utc = UtcCalendarOf(instant);
    const TIME_ZONE_INFORMATION* rules = utc ? RulesOf(utc->wYear) : nullptr;
    SYSTEMTIME local{};
    if (!rules || !::SystemTimeToTzSpecificLocalTime(rules, &*utc, &local))
        return std::nullopt;
    return local;
}

std::optional<UnixSeconds> TimeZone::ToInstant(const SYSTEMTIME& local) const
{
    SYSTEMTIME wholeSeconds = local;
    wholeSeconds.wMilliseconds = 0;
    const TIME_ZONE_INFORMATION* rules = IsCalendarTime(wholeSeconds) ? RulesOf(local.wYear) : nullptr;
    SYSTEMTIME utc{};
    if (!rules || !::TzSpecificLocalTimeToSystemTime(rules, &wholeSeconds, &utc))
        return std::nullopt;
    return InstantOf(utc);
}

LocalDate ToLocalDate(UnixSeconds instant, const TimeZone& zone)
{
    LocalDate date;
    std::optional<SYSTEMTIME> local = zone.ToLocal(instant);
    if (!local || !::SystemTimeToVariantTime(&*local, &date.value))
        return date;
    const std::optional<SYSTEMTIME> back = CalendarOf(date.value);
    date.valid = back && IsSameSecond(*local, *back);
    return date;
}

std::optional<SYSTEMTIME> CalendarOf(DATE date)
{
    SYSTEMTIME calendar{};
    return ::VariantTimeToSystemTime(date, &calendar) ? std::optional(calendar) : std::nullopt;
}
