#include "import/MailDate.h"

#include <gtest/gtest.h>

namespace
{
// 2002-08-22 11:36:16 UTC, by `date -d ... +%s`.
constexpr int64_t augustMorning = 1030016176;

std::optional<int64_t> UnixSeconds(std::string_view date)
{
    const std::optional<FileTime> time = ParseMailDate(date);
    if (!time)
        return std::nullopt;
    return *time / 10'000'000 - 11'644'473'600;
}
}    // namespace

TEST(MailDate, IsAFileTime)
{
    EXPECT_EQ(ParseMailDate("Thu, 01 Jan 1970 00:00:00 +0000"), 116'444'736'000'000'000);
}

struct DateCase
{
    const char* written;
    int64_t seconds;
};

class MailDateForms : public testing::TestWithParam<DateCase>
{
};

TEST_P(MailDateForms, IsReadAsTheSameInstant)
{
    EXPECT_EQ(UnixSeconds(GetParam().written), GetParam().seconds) << GetParam().written;
}

INSTANTIATE_TEST_SUITE_P(
    MailDate, MailDateForms,
    testing::Values(DateCase{"Thu, 22 Aug 2002 12:36:16 +0100", augustMorning},
                    DateCase{"22 Aug 2002 07:36:16 -0400 (EDT)", augustMorning},
                    DateCase{"Thu, 22 Aug 02 07:36:16 EDT", augustMorning},
                    DateCase{"Thu Aug 22 11:36:16 2002", augustMorning},
                    DateCase{"Thu Aug 22 12:36:16 2002 +0100", augustMorning},
                    DateCase{"user@host  Thu Aug 22 11:36:16 2002", augustMorning},
                    DateCase{"2002-08-22T12:36:16+01:00", augustMorning},
                    DateCase{"2002-08-22T11:36:16.250Z", augustMorning},
                    DateCase{"22-Aug-2002 11:36:16 GMT", augustMorning},
                    DateCase{"Thu, 22 August 2002 11:36:16", augustMorning},
                    DateCase{"Thu,22 Aug 2002 11:36:16 +0000 (comment (nested) 5)", augustMorning},
                    DateCase{"22 Aug 102 11:36:16 GMT", augustMorning},
                    DateCase{"Thu, 22 Aug 2002 11:36 GMT", augustMorning - 16},
                    DateCase{"1 Jan 1970 00:00:60 +0000", 60}, DateCase{"31 Dec 1969 23:59:59 +0000", -1},
                    DateCase{"Fri, 1 Oct 1999 12:00:00 +9900", 938779200}));

class UnreadableDate : public testing::TestWithParam<const char*>
{
};

TEST_P(UnreadableDate, IsLeftOut)
{
    EXPECT_EQ(ParseMailDate(GetParam()), std::nullopt) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(MailDate, UnreadableDate,
                         testing::Values("", "tomorrow", "31 Feb 2002 10:00:00 +0000",
                                         "22 Aug 2002 25:00:00 +0000", "Thu Jan 01 00:00:10 +0000",
                                         "1 Jan 1500 00:00:00 +0000", "99999999999 Aug 2002",
                                         "Pn, 29 paX 2007 21:13:00 +0100", "( ( ((", ":::"));
