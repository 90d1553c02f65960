#include "quorvex/AutomationDate.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace
{
FILETIME Utc(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD milliseconds = 0)
{
    const SYSTEMTIME fields{year, month, 0, day, hour, minute, second, milliseconds};
    FILETIME time{};
    EXPECT_TRUE(SystemTimeToFileTime(&fields, &time));
    return time;
}

std::int64_t Ticks(FILETIME time)
{
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

// The date that automation itself makes of these fields.
DATE Date(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second)
{
    SYSTEMTIME fields{year, month, 0, day, hour, minute, second, 0};
    DATE date = 0;
    EXPECT_TRUE(SystemTimeToVariantTime(&fields, &date));
    return date;
}

constexpr double aMillisecond = 1.0 / 86'400'000;

TEST(AutomationDate, CountsDaysAsAutomationDoes)
{
    const DATE there = LocalDateFromUtc(Utc(2001, 7, 4, 12, 30, 15));
    const FILETIME back = UtcFromLocalDate(there);

    EXPECT_EQ(Ticks(back), Ticks(Utc(2001, 7, 4, 12, 30, 15)));
}

TEST(AutomationDate, ShowsTheTimeOfTheLocalClockInEveryZone)
{
    FILETIME now, localNow;
    SYSTEMTIME clock;
    GetSystemTimeAsFileTime(&now);
    now.dwLowDateTime -= static_cast<DWORD>(Ticks(now) % 10'000'000);    // a whole second
    ASSERT_TRUE(FileTimeToLocalFileTime(&now, &localNow));
    ASSERT_TRUE(FileTimeToSystemTime(&localNow, &clock));

    const DATE local = LocalDateFromUtc(now);

    EXPECT_NEAR(local, Date(clock.wYear, clock.wMonth, clock.wDay, clock.wHour, clock.wMinute, clock.wSecond),
                aMillisecond);
}

TEST(AutomationDate, KeepsMillisecondsBothWays)
{
    const FILETIME time = Utc(2023, 11, 5, 20, 59, 59, 987);

    EXPECT_EQ(Ticks(UtcFromLocalDate(LocalDateFromUtc(time))), Ticks(time));
}

TEST(AutomationDate, RoundsToTheNearestMillisecond)
{
    FILETIME time = Utc(2023, 11, 5, 20, 0, 0, 500);
    time.dwLowDateTime += 6'000;    // 0.6 ms

    EXPECT_EQ(Ticks(UtcFromLocalDate(LocalDateFromUtc(time))), Ticks(Utc(2023, 11, 5, 20, 0, 0, 501)));
}

TEST(AutomationDate, SurvivesTheRoundTripThroughTheWholeYear)
{
    // Every hour but the ones that clocks repeat.
    int differing = 0;
    for (int hour = 0; hour < 366 * 24; ++hour)
    {
        FILETIME time = Utc(2024, 1, 1, 0, 15, 0);
        const std::int64_t ticks = Ticks(time) + hour * 36'000'000'000LL;
        time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        if (Ticks(UtcFromLocalDate(LocalDateFromUtc(time))) != ticks)
            ++differing;
    }

    EXPECT_LE(differing, 1);
}

TEST(AutomationDate, NeverGoesBackWhileLocalTimeGoesOn)
{
    const DATE start = Date(2024, 1, 1, 0, 0, 0);
    std::int64_t before = 0;
    for (int step = 0; step < 366 * 48; ++step)
    {
        const std::int64_t now = Ticks(UtcFromLocalDate(start + step / 48.0));
        ASSERT_GT(now, before - 1) << step;
        before = now - 36'000'000'000LL;    // a skipped hour may be told twice, never more
    }
}

TEST(AutomationDate, CountsTheHoursUpBeforeItsOwnStart)
{
    const DATE date = LocalDateFromUtc(UtcFromLocalDate(-1.25));    // 1899-12-29 06:00

    EXPECT_NEAR(date, -1.25, aMillisecond);
}

TEST(AutomationDate, SaysNoDateForWhatAutomationCannotHold)
{
    EXPECT_EQ(LocalDateFromUtc({0xFFFFFFFF, 0x7FFFFFFF}), noDate);
}

TEST(AutomationDate, TakesTheNearestTimeForDatesOutOfRange)
{
    EXPECT_EQ(Ticks(UtcFromLocalDate(-1e300)), 0);
    EXPECT_GT(Ticks(UtcFromLocalDate(1e300)), Ticks(Utc(9999, 12, 30, 0, 0, 0)));
    EXPECT_GT(Ticks(UtcFromLocalDate(std::numeric_limits<double>::quiet_NaN())), 0);
}

// Run a second time with this zone set (see CMakeLists.txt): the rules are fixed there.
class NewYorkDate : public testing::Test
{
protected:
    void SetUp() override
    {
        TIME_ZONE_INFORMATION zone{};
        if (!GetTimeZoneInformationForYear(2024, nullptr, &zone) || zone.Bias != 300 ||
            zone.DaylightDate.wMonth != 3)
            GTEST_SKIP() << "needs the time zone of New York";
    }
};

TEST_F(NewYorkDate, FollowsTheClockOfItsOwnSeason)
{
    EXPECT_NEAR(LocalDateFromUtc(Utc(2024, 1, 15, 12, 0, 0)), Date(2024, 1, 15, 7, 0, 0), aMillisecond);
    EXPECT_NEAR(LocalDateFromUtc(Utc(2024, 7, 15, 12, 0, 0)), Date(2024, 7, 15, 8, 0, 0), aMillisecond);
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 1, 15, 7, 0, 0))), Ticks(Utc(2024, 1, 15, 12, 0, 0)));
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 7, 15, 8, 0, 0))), Ticks(Utc(2024, 7, 15, 12, 0, 0)));
}

TEST_F(NewYorkDate, GoesOnBehindAnHourThatClocksSkip)
{
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 3, 10, 1, 59, 59))), Ticks(Utc(2024, 3, 10, 6, 59, 59)));
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 3, 10, 2, 30, 0))), Ticks(Utc(2024, 3, 10, 7, 30, 0)));
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 3, 10, 3, 0, 0))), Ticks(Utc(2024, 3, 10, 7, 0, 0)));
}

TEST_F(NewYorkDate, MeansTheFirstOfTwoEqualTimes)
{
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 11, 3, 1, 30, 0))), Ticks(Utc(2024, 11, 3, 5, 30, 0)));
    EXPECT_EQ(Ticks(UtcFromLocalDate(Date(2024, 11, 3, 2, 0, 0))), Ticks(Utc(2024, 11, 3, 7, 0, 0)));
}

TEST_F(NewYorkDate, ShowsBothPassesOfARepeatedHourAlike)
{
    EXPECT_EQ(LocalDateFromUtc(Utc(2024, 11, 3, 5, 30, 0)), LocalDateFromUtc(Utc(2024, 11, 3, 6, 30, 0)));
}
}    // namespace
