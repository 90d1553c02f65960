#include "win/ComboBox.h"

#include "tests/win/ControlFixture.h"

#include <string>

namespace
{
class ComboBox : public ControlFixture<CComboBox>
{
protected:
    ComboBox() : ControlFixture(WC_COMBOBOXW, CBS_DROPDOWNLIST | WS_VSCROLL) {}

    void Add(const std::wstring& text) const { Ask(CB_ADDSTRING, 0, text.c_str()); }
};

TEST_F(ComboBox, AddsTextsInTheOrderGiven)
{
    EXPECT_EQ(control.AddString(L"Mark as expired"), 0);
    EXPECT_EQ(control.AddString(L"Anytime"), 1);

    wchar_t text[100] = L"";
    Ask(CB_GETLBTEXT, 1, text);
    EXPECT_STREQ(text, L"Anytime");
    EXPECT_EQ(Ask(CB_GETCOUNT), 2);
}

TEST_F(ComboBox, CountsItsEntries)
{
    Add(L"Last day");
    Add(L"Anytime");

    EXPECT_EQ(control.GetCount(), 2);
}

TEST_F(ComboBox, SelectsAnEntry)
{
    Add(L"Last day");
    Add(L"Anytime");

    control.SetCurSel(1);

    EXPECT_EQ(Ask(CB_GETCURSEL), 1);
}

TEST_F(ComboBox, TakesTheSelectionAway)
{
    Add(L"Last day");
    Ask(CB_SETCURSEL, 0);

    control.SetCurSel(-1);

    EXPECT_EQ(Ask(CB_GETCURSEL), CB_ERR);
}

TEST_F(ComboBox, TellsWhatIsSelected)
{
    Add(L"Last day");
    Add(L"Anytime");
    EXPECT_EQ(control.GetCurSel(), CB_ERR);

    Ask(CB_SETCURSEL, 1);

    EXPECT_EQ(control.GetCurSel(), 1);
}

TEST_F(ComboBox, ReadsTheTextOfAnEntry)
{
    const std::wstring text(500, L'x');
    Add(text);
    Add(L"");

    EXPECT_EQ(control.GetItemText(0), text);
    EXPECT_EQ(control.GetItemText(1), L"");
    EXPECT_EQ(control.GetItemText(2), L"");
}
}    // namespace
