#include "engine/LocalTime.h"

#include <windows.h>

#include <oleauto.h>

#include <cmath>
#include <cstdlib>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

bool operator==(const SYSTEMTIME& left, const SYSTEMTIME& right)
{
    return left.wYear == right.wYear && left.wMonth == right.wMonth && left.wDay == right.wDay &&
           left.wHour == right.wHour && left.wMinute == right.wMinute && left.wSecond == right.wSecond;
}

namespace
{
SYSTEMTIME Calendar(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second = 0)
{
    return {year, month, 0, day, hour, minute, second, 0};
}

// Summer time from the last Sunday in March at 01:00 UTC to the last in October.
TimeZone Berlin()
{
    TIME_ZONE_INFORMATION rules{};
    rules.Bias = -60;
    rules.DaylightBias = -60;
    rules.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    rules.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
    return TimeZone(rules);
}

// South of the equator, with half an hour of summer time over New Year.
TimeZone LordHowe()
{
    TIME_ZONE_INFORMATION rules{};
    rules.Bias = -630;
    rules.DaylightBias = -30;
    rules.DaylightDate = {0, 10, 0, 1, 2, 0, 0, 0};
    rules.StandardDate = {0, 4, 0, 1, 2, 0, 0, 0};
    return TimeZone(rules);
}

TimeZone Kolkata()
{
    TIME_ZONE_INFORMATION rules{};
    rules.Bias = -330;
    return TimeZone(rules);
}

TEST(LocalTime, IsTheZonesStandardTimeInWinter)
{
    EXPECT_EQ(*Berlin().ToLocal(1705312800), Calendar(2024, 1, 15, 11, 0));
}

TEST(LocalTime, IsDaylightTimeInSummer)
{
    EXPECT_EQ(*Berlin().ToLocal(1721037600), Calendar(2024, 7, 15, 12, 0));
}

TEST(LocalTime, FollowsAZoneWithHalfHours)
{
    EXPECT_EQ(*Kolkata().ToLocal(1705312800), Calendar(2024, 1, 15, 15, 30));
    EXPECT_EQ(*Kolkata().ToInstant(Calendar(2024, 1, 15, 15, 30)), 1705312800);
}

TEST(LocalTime, KeepsSummerOverNewYearSouthOfTheEquator)
{
    EXPECT_EQ(*LordHowe().ToLocal(1704067199), Calendar(2024, 1, 1, 10, 59, 59));
    EXPECT_EQ(*LordHowe().ToLocal(1720000000), Calendar(2024, 7, 3, 20, 16, 40));
}

TEST(LocalTime, ComesBackToTheSameInstantOutsideOfAnOverlap)
{
    const TimeZone zone = Berlin();
    for (UnixSeconds instant = 1704067200; instant < 1735689600; instant += 3571)
    {
        const SYSTEMTIME local = *zone.ToLocal(instant);
        const bool twice = local.wMonth == 10 && local.wDay == 27 && local.wHour == 2;

        if (!twice)
        {
            EXPECT_EQ(*zone.ToInstant(local), instant);
        }
    }
}

TEST(LocalTime, ReadsATimeThatOccursTwiceAsOneOfTheTwoAndComesBackToIt)
{
    const TimeZone zone = Berlin();
    const SYSTEMTIME twice = Calendar(2024, 10, 27, 2, 30);

    const UnixSeconds instant = *zone.ToInstant(twice);

    EXPECT_TRUE(instant == 1729989000 || instant == 1729992600) << instant;
    EXPECT_EQ(*zone.ToLocal(instant), twice);
}

TEST(LocalTime, MovesATimeThatTheChangeOfTheClockLeavesOutByOneHour)
{
    const TimeZone zone = Berlin();

    const SYSTEMTIME local = *zone.ToLocal(*zone.ToInstant(Calendar(2024, 3, 31, 2, 30)));

    EXPECT_TRUE(local == Calendar(2024, 3, 31, 1, 30) || local == Calendar(2024, 3, 31, 3, 30))
        << local.wHour;
}

TEST(LocalTime, DropsMilliseconds)
{
    SYSTEMTIME almostNext = Calendar(2024, 1, 15, 11, 0);
    almostNext.wMilliseconds = 999;

    EXPECT_EQ(*Berlin().ToInstant(almostNext), 1705312800);
}

TEST(LocalTime, HasNoInstantForFieldsThatAreNoCalendarTime)
{
    EXPECT_FALSE(Berlin().ToInstant(Calendar(2023, 2, 29, 0, 0)));
    EXPECT_FALSE(Berlin().ToInstant(Calendar(2023, 13, 1, 0, 0)));
}

TEST(LocalTime, HasNoCalendarTimeOutsideOfWhatTheSystemCanExpress)
{
    EXPECT_FALSE(Berlin().ToLocal(INT64_MAX));
    EXPECT_FALSE(Berlin().ToLocal(INT64_MIN));
    EXPECT_FALSE(Berlin().ToLocal(-11644473601));    // before 1601
}

TEST(LocalDate, CountsDaysSinceTheLastButOneDayOf1899)
{
    const LocalDate date = ToLocalDate(1705312800, Berlin());

    EXPECT_TRUE(date.valid);
    EXPECT_NEAR(date.value, 45306 + 11.0 / 24, 1e-9);
}

TEST(LocalDate, GivesEverySecondOfADayBackUnchanged)
{
    const TimeZone zone = Berlin();
    for (UnixSeconds instant = 1705276800; instant < 1705276800 + 86400; ++instant)
        ASSERT_TRUE(ToLocalDate(instant, zone).valid) << instant;
}

TEST(LocalDate, IsInvalidForAnInstantWithoutACalendarTime)
{
    EXPECT_FALSE(ToLocalDate(INT64_MAX, Berlin()).valid);
}

TEST(LocalDate, IsInvalidBehindTheLastYearOfAutomationDates)
{
    EXPECT_FALSE(ToLocalDate(253402300800, Kolkata()).valid);    // in the year 10000
}

TEST(LocalDate, SplitsIntoCalendarFieldsRoundedToASecond)
{
    EXPECT_EQ(*CalendarOf(45306 + 11.0 / 24), Calendar(2024, 1, 15, 11, 0));
    EXPECT_EQ(*CalendarOf(45306.5 + 0.4 / 86400), Calendar(2024, 1, 15, 12, 0, 0));
    EXPECT_FALSE(CalendarOf(1e9));
}

// These run in the zone of the machine, once for each zone that the build names.
class SystemZone : public testing::Test
{
protected:
    TimeZone zone;
};

TEST_F(SystemZone, KeepsElapsedTimeThroughLocalTimeAllYearExceptWhereTheClockGoesBack)
{
    int ambiguous = 0;
    for (UnixSeconds instant = 1704067200; instant < 1735689600; instant += 1800)
        if (*zone.ToInstant(*zone.ToLocal(instant)) != instant)
            ++ambiguous;

    EXPECT_LE(ambiguous, 2);    // one hour at most, in half hours
}

TEST_F(SystemZone, MovesNoExistingLocalTimeOfTheYear)
{
    for (UnixSeconds instant = 1704067200; instant < 1735689600; instant += 600)
    {
        const SYSTEMTIME local = *zone.ToLocal(instant);

        ASSERT_EQ(*zone.ToLocal(*zone.ToInstant(local)), local) << instant;
    }
}

TEST_F(SystemZone, IsTheZoneThatTheEnvironmentNames)
{
    const char* named = std::getenv("TZ");
    const std::string name = named ? named : "";
    const UnixSeconds july = 1720000000;    // 2024-07-03 09:46:40 UTC

    if (name == "Europe/Berlin")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 11, 46, 40));
    else if (name == "America/New_York")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 5, 46, 40));
    else if (name == "Australia/Sydney")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 19, 46, 40));
    else if (name == "Australia/Lord_Howe")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 20, 16, 40));
    else if (name == "Asia/Kolkata")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 15, 16, 40));
    else if (name == "UTC")
        EXPECT_EQ(*zone.ToLocal(july), Calendar(2024, 7, 3, 9, 46, 40));
    else
        GTEST_SKIP() << "the zone of the machine is not named";
}

TEST_F(SystemZone, TellsTheSameDifferenceFromUtcAsTheSystemDoesNow)
{
    const UnixSeconds now = CurrentUnixSeconds();
    SYSTEMTIME local{};
    ::GetLocalTime(&local);
    DATE systemDate = 0;
    ::SystemTimeToVariantTime(&local, &systemDate);

    EXPECT_NEAR(ToLocalDate(now, zone).value, systemDate, 5.0 / 86400);
}
}    // namespace
