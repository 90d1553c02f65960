#include "engine/ScanSettings.h"

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include <gtest/gtest.h>

namespace
{
// Two hours east of Greenwich all year.
TimeZone TwoHoursEast()
{
    TIME_ZONE_INFORMATION rules{};
    rules.Bias = -120;
    return TimeZone(rules);
}

DATE DateOf(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second = 0)
{
    SYSTEMTIME calendar{year, month, 0, day, hour, minute, second, 0};
    DATE date = 0;
    ::SystemTimeToVariantTime(&calendar, &date);
    return date;
}

constexpr UnixSeconds quarterPastTen = 1710490500;    // 2024-03-15 08:15:00 UTC, 10:15 two hours east

std::vector<LONG> ActionFlags(const ScanState& state)
{
    return {state.actionFlag, state.actionExpire, state.actionCopy,
            state.actionMove, state.actionDelete, state.actionDeletePermanently};
}

TEST(ScanSettings, GoBackTheDaysOfEachTimeSpan)
{
    const std::vector<int> days{1, 2, 5, 10, 20, 30, 50, 75, 100, 365};

    for (int index = 0; index < 10; ++index)
        EXPECT_EQ(DaysOfTimeSpan(index), days[static_cast<std::size_t>(index)]);
    EXPECT_EQ(DaysOfTimeSpan(11), 1);
}

TEST(ScanSettings, LeaveTheRunWithoutATimeSpanForAnytime)
{
    ScanState state;

    ChooseTimeSpan(state, 10, quarterPastTen, TwoHoursEast());

    EXPECT_EQ(state.useTimeSpan, 0);
    EXPECT_EQ(state.cutoffDate.vt, VT_EMPTY);
}

TEST(ScanSettings, LeaveTheRunWithoutATimeSpanWhenNothingIsSelected)
{
    ScanState state;

    ChooseTimeSpan(state, -1, quarterPastTen, TwoHoursEast());

    EXPECT_EQ(state.useTimeSpan, 0);
}

TEST(ScanSettings, CutTheLastDayOffAtTheSameTimeOfDayNotAtMidnight)
{
    ScanState state;

    ChooseTimeSpan(state, 0, quarterPastTen, TwoHoursEast());

    EXPECT_EQ(state.useTimeSpan, 1);
    EXPECT_EQ(state.cutoffDate.vt, VT_DATE);
    EXPECT_EQ(state.cutoffDate.date, DateOf(2024, 3, 14, 10, 15));
}

TEST(ScanSettings, CountTheLastYearAs365DaysAlsoAcrossALeapDay)
{
    ScanState state;

    ChooseTimeSpan(state, 9, quarterPastTen, TwoHoursEast());

    EXPECT_EQ(state.cutoffDate.date, DateOf(2023, 3, 16, 10, 15));
}

TEST(ScanSettings, CountASpanInElapsedSecondsAcrossAChangeOfTheClock)
{
    TIME_ZONE_INFORMATION berlin{};
    berlin.Bias = -60;
    berlin.DaylightBias = -60;
    berlin.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    berlin.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
    ScanState state;

    // 2024-03-31 20:00 in summer time; a day of 86400 seconds before, it was 19:00 in winter time.
    ChooseTimeSpan(state, 0, 1711908000, TimeZone(berlin));

    EXPECT_EQ(state.cutoffDate.date, DateOf(2024, 3, 30, 19, 0));
}

TEST(ScanSettings, KeepAnEarlierCutOffWhenAnytimeIsChosenAfterwards)
{
    ScanState state;
    ChooseTimeSpan(state, 2, quarterPastTen, TwoHoursEast());
    const DATE cutoff = state.cutoffDate.date;

    ChooseTimeSpan(state, 10, quarterPastTen + 60, TwoHoursEast());

    EXPECT_EQ(state.useTimeSpan, 1);
    EXPECT_EQ(state.cutoffDate.date, cutoff);
}

TEST(ScanSettings, SetExactlyTheFlagOfEachActionInTheList)
{
    const std::vector<std::vector<LONG>> flags{{0, 0, 0, 0, 1, 0}, {0, 1, 0, 0, 0, 0}, {0, 0, 1, 0, 0, 0},
                                               {0, 0, 0, 1, 0, 0}, {1, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 1}};
    for (int index = 0; index < 6; ++index)
    {
        ScanState state;
        state.destFolderPath = L"Archive";

        const bool accepted = ChooseAction(state, ActionOfIndex(index), L"the action's text");

        EXPECT_TRUE(accepted);
        EXPECT_EQ(ActionFlags(state), flags[static_cast<std::size_t>(index)]) << "index " << index;
        EXPECT_EQ(state.actionName, L"the action's text");
    }
}

TEST(ScanSettings, FlagWhenNoActionOrAnUnknownOneIsSelected)
{
    EXPECT_EQ(ActionOfIndex(-1), DuplicateAction::markWithFlag);
    EXPECT_EQ(ActionOfIndex(6), DuplicateAction::markWithFlag);
}

TEST(ScanSettings, RefuseToCopyOrMoveWithoutADestinationAndSetNoFlag)
{
    for (const DuplicateAction action : {DuplicateAction::copyToFolder, DuplicateAction::moveToFolder})
    {
        ScanState state;

        const bool accepted = ChooseAction(state, action, L"Move to folder...");

        EXPECT_FALSE(accepted);
        EXPECT_EQ(ActionFlags(state), (std::vector<LONG>{0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(state.actionName, L"");
    }
}

TEST(ScanSettings, ClearEveryChoiceButDestinationAndCutOffWhenReset)
{
    ScanState state;
    state.destFolderPath = L"Archive";
    state.useSenderName = state.useRecipientName = state.useInternetHeader = 1;
    state.useSendTime = state.useAttachments = 1;
    ChooseTimeSpan(state, 0, quarterPastTen, TwoHoursEast());
    for (int index = 0; index < 6; ++index)
        ChooseAction(state, ActionOfIndex(index), L"text");

    ResetSettings(state);

    EXPECT_EQ(ActionFlags(state), (std::vector<LONG>{0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(state.useSenderName + state.useRecipientName + state.useInternetHeader, 0);
    EXPECT_EQ(state.useSendTime + state.useAttachments + state.useTimeSpan, 0);
    EXPECT_EQ(state.actionName, L"");
    EXPECT_EQ(state.destFolderPath, L"Archive");
    EXPECT_EQ(state.cutoffDate.vt, VT_DATE);
}
}    // namespace
