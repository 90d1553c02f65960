#include "win/Button.h"

#include "tests/win/ControlFixture.h"

namespace
{
class Button : public ControlFixture<CButton>
{
protected:
    Button() : ControlFixture(WC_BUTTONW, BS_AUTOCHECKBOX) {}
};

TEST_F(Button, IsCheckedAndUnchecked)
{
    control.SetCheck(BST_CHECKED);
    EXPECT_EQ(Ask(BM_GETCHECK), BST_CHECKED);

    control.SetCheck(BST_UNCHECKED);
    EXPECT_EQ(Ask(BM_GETCHECK), BST_UNCHECKED);
}

TEST_F(Button, TellsWhetherTheUserHasCheckedIt)
{
    EXPECT_EQ(control.GetCheck(), BST_UNCHECKED);

    Ask(BM_CLICK);

    EXPECT_EQ(control.GetCheck(), BST_CHECKED);
}
}    // namespace
