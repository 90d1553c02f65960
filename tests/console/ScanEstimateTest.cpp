#include "console/ScanEstimate.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
void Search(ScanEstimate& estimate, int searches)
{
    for (int i = 0; i < searches; ++i)
        estimate.FinishedSearch();
}
}    // namespace

TEST(ScanEstimate, GrowsWithEachSearchAndEndsAtAHundred)
{
    // Three messages search two folders, two search one: eight searches.
    ScanEstimate estimate({3, 2});

    Search(estimate, 4);
    const int halfWay = estimate.GetPercent();
    Search(estimate, 4);

    EXPECT_EQ(halfWay, 50);
    EXPECT_EQ(estimate.GetPercent(), 100);
}

TEST(ScanEstimate, TakesDuplicatesInTheFolderBeingSearchedOffTheWork)
{
    ScanEstimate estimate({3, 2});

    estimate.FoundDuplicates(1);    // in the first folder: two searches fewer
    estimate.FinishedSearch();
    estimate.FoundDuplicates(2);    // in the second: two fewer
    estimate.FinishedSearch();

    EXPECT_EQ(estimate.GetPercent(), 50);
    Search(estimate, 2);
    EXPECT_EQ(estimate.GetPercent(), 100);
}

TEST(ScanEstimate, NeverFallsBackAndNeverPassesAHundred)
{
    ScanEstimate estimate({2, 2});
    int last = 0;

    for (int i = 0; i < 20; ++i)
    {
        estimate.FoundDuplicates(3);
        estimate.FinishedSearch();
        EXPECT_GE(estimate.GetPercent(), last);
        EXPECT_LE(estimate.GetPercent(), 100);
        last = estimate.GetPercent();
    }
}

TEST(ScanEstimate, StaysAtNothingWithoutFolders)
{
    ScanEstimate estimate(std::vector<long long>{});

    EXPECT_EQ(estimate.GetPercent(), 0);
}
