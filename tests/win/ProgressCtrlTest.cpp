#include "win/ProgressCtrl.h"

#include "tests/win/ControlFixture.h"

namespace
{
class ProgressCtrl : public ControlFixture<CProgressCtrl>
{
protected:
    ProgressCtrl() : ControlFixture(PROGRESS_CLASSW, 0) {}
};

TEST_F(ProgressCtrl, IsFullAfterTenStepsUnlessToldOtherwise)
{
    for (int step = 0; step < 10; ++step)
        control.StepIt();

    EXPECT_EQ(Ask(PBM_GETPOS), 100);
}

TEST_F(ProgressCtrl, StartsAgainWhenItIsFull)
{
    Ask(PBM_SETPOS, 100);

    control.StepIt();

    EXPECT_LE(Ask(PBM_GETPOS), 10);
}

TEST_F(ProgressCtrl, TakesAPosition)
{
    Ask(PBM_SETPOS, 70);

    control.SetPos(30);

    EXPECT_EQ(Ask(PBM_GETPOS), 30);
}

TEST_F(ProgressCtrl, TellsItsPosition)
{
    Ask(PBM_SETPOS, 40);

    EXPECT_EQ(control.GetPos(), 40);
}

TEST_F(ProgressCtrl, TakesARangeOfAnySize)
{
    control.SetRange(-5, 100'000);

    PBRANGE range{};
    Ask(PBM_GETRANGE, TRUE, &range);
    EXPECT_EQ(range.iLow, -5);
    EXPECT_EQ(range.iHigh, 100'000);
}
}    // namespace
