// The dialog of the add-ins, used as a person would.
#include "tests/explorer/WindowFixture.h"
#include "tests/ui/ModalDriver.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
constexpr int stateColumn = 2;

class AddInsDialog : public WindowFixture
{
protected:
    // Opens the dialog from its menu entry, selects the add-in of the tests there, and hands it to `script`,
    // on another thread; afterwards it is closed.
    void Use(const std::function<void(ModalDriver&, HWND)>& script)
    {
        Open();
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND dialog = self.WaitForDialog(L"Add-ins");
                ListOf(dialog).SetItemState(Row(), LVIS_SELECTED, LVIS_SELECTED);
                script(self, dialog);
                self.Click(dialog, IDCANCEL);
                self.WaitForEnd(dialog);
            });
        window->Press(L"Add-ins...");
        user.Join();
    }

    int Row() const { return static_cast<int>(PlaceOfTheAddIn()); }
    static AttachedControl<CListCtrl> ListOf(HWND dialog)
    {
        return AttachedControl<CListCtrl>(::GetDlgItem(dialog, IDC_ADD_IN_LIST));
    }
    std::wstring StateIn(HWND dialog) const { return ListOf(dialog).GetItemText(Row(), stateColumn); }
    static bool IsEnabled(HWND dialog, int button)
    {
        return ::IsWindowEnabled(::GetDlgItem(dialog, button)) != FALSE;
    }
};
}    // namespace

TEST_F(AddInsDialog, ListsAnAddInThatIsLoaded)
{
    const RegisteredAddIn addIn(script);

    Use(
        [this](ModalDriver&, HWND dialog)
        {
            EXPECT_EQ(ListOf(dialog).GetItemText(Row(), 0), RegisteredAddIn::friendlyName);
            EXPECT_EQ(ListOf(dialog).GetItemText(Row(), 1), RegisteredAddIn::progId);
            EXPECT_EQ(StateIn(dialog), L"Loaded");
            EXPECT_FALSE(IsEnabled(dialog, IDC_LOAD));
            EXPECT_TRUE(IsEnabled(dialog, IDC_UNLOAD));
        });
}

TEST_F(AddInsDialog, UnloadsAnAddIn)
{
    const RegisteredAddIn addIn(script);

    Use(
        [this](ModalDriver& user, HWND dialog)
        {
            user.Click(dialog, IDC_UNLOAD);

            EXPECT_EQ(StateIn(dialog), L"Not loaded");
            EXPECT_TRUE(IsEnabled(dialog, IDC_LOAD));
            EXPECT_FALSE(IsEnabled(dialog, IDC_UNLOAD));
        });

    EXPECT_EQ(script.calls.back(), "OnDisconnection 1");
    EXPECT_EQ(script.alive, 0);
    EXPECT_FALSE(window->Press(L"Menu Entry"));
}

TEST_F(AddInsDialog, LoadsAnAddIn)
{
    const RegisteredAddIn addIn(script, 0);

    Use(
        [this](ModalDriver& user, HWND dialog)
        {
            EXPECT_EQ(StateIn(dialog), L"Not loaded");
            user.Click(dialog, IDC_LOAD);

            EXPECT_EQ(StateIn(dialog), L"Loaded");
            EXPECT_FALSE(IsEnabled(dialog, IDC_LOAD));
        });

    EXPECT_EQ(script.calls, std::vector<std::string>{"OnConnection 0"});
    EXPECT_TRUE(window->Press(L"Menu Entry"));
}

TEST_F(AddInsDialog, TellsWhyAnAddInFailsAndTriesItAgain)
{
    script.connectResult = E_ACCESSDENIED;
    const RegisteredAddIn addIn(script);

    Use(
        [this](ModalDriver& user, HWND dialog)
        {
            EXPECT_TRUE(StateIn(dialog).starts_with(L"Failed: "));
            EXPECT_NE(TextOf(::GetDlgItem(dialog, IDC_RESULT)).find(L"0x80070005"), std::wstring::npos);
            script.connectResult = S_OK;
            user.Click(dialog, IDC_LOAD);

            EXPECT_EQ(StateIn(dialog), L"Loaded");
            EXPECT_EQ(TextOf(::GetDlgItem(dialog, IDC_RESULT)), L"");
        });
}

TEST_F(AddInsDialog, ClosesByEscape)
{
    Open();
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND dialog = self.WaitForDialog(L"Add-ins");
            self.PressKey(dialog, VK_ESCAPE);
            self.WaitForEnd(dialog);
        });

    window->Press(L"Add-ins...");
    user.Join();

    EXPECT_TRUE(::IsWindowEnabled(window->GetSafeHwnd()));
}
