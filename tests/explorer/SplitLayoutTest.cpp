#include "explorer/SplitLayout.h"

#include <windows.h>

#include <gtest/gtest.h>

TEST(SplitLayout, FillsTheAreaWithPanesAndGaps)
{
    SplitLayout layout(USER_DEFAULT_SCREEN_DPI);

    layout.SetArea({0, 30, 1000, 630});

    EXPECT_EQ(layout.GetFolders().left, 0);
    EXPECT_EQ(layout.GetMessages().right, 1000);
    EXPECT_EQ(layout.GetReading().bottom, 630);
    EXPECT_GT(layout.GetMessages().left, layout.GetFolders().right);
    EXPECT_GT(layout.GetReading().top, layout.GetMessages().bottom);
}

TEST(SplitLayout, MovesAGapWithTheMouse)
{
    SplitLayout layout(USER_DEFAULT_SCREEN_DPI);
    layout.SetArea({0, 0, 1000, 600});

    layout.Drag(SplitLayout::Gap::upright, {400, 0});
    layout.Drag(SplitLayout::Gap::level, {0, 150});

    EXPECT_EQ(layout.GetFolders().right, 400);
    EXPECT_EQ(layout.GetMessages().bottom, 150);
    EXPECT_EQ(layout.HitTest({401, 300}), SplitLayout::Gap::upright);
    EXPECT_EQ(layout.HitTest({700, 151}), SplitLayout::Gap::level);
    EXPECT_EQ(layout.HitTest({100, 100}), SplitLayout::Gap::none);
}

TEST(SplitLayout, LeavesEveryPaneRoom)
{
    SplitLayout layout(USER_DEFAULT_SCREEN_DPI);
    layout.SetArea({0, 0, 1000, 600});

    layout.Drag(SplitLayout::Gap::upright, {5000, 0});
    layout.Drag(SplitLayout::Gap::level, {0, -50});

    EXPECT_GT(layout.GetMessages().right, layout.GetMessages().left);
    EXPECT_GT(layout.GetMessages().bottom, layout.GetMessages().top);
}
