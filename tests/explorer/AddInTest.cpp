#include "explorer/office/CommandBarButton.h"
#include "tests/explorer/FoundButton.h"
#include "tests/explorer/WindowFixture.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
std::wstring CaptionOf(HMENU menu, int place)
{
    wchar_t text[200] = L"";
    ::GetMenuStringW(menu, static_cast<UINT>(place), text, ARRAYSIZE(text), MF_BYPOSITION);
    return text;
}

int PlaceOf(HMENU menu, const std::wstring& caption)
{
    for (int place = 0; place < ::GetMenuItemCount(menu); ++place)
        if (CaptionOf(menu, place) == caption)
            return place;
    return -1;
}
}    // namespace

class HostedAddIn : public WindowFixture
{
protected:
    HMENU ToolsMenu() const { return ::GetSubMenu(::GetMenu(window->GetSafeHwnd()), 4); }
};

TEST_F(HostedAddIn, FindsSevenMenusOfWhichTheFifthIsTools)
{
    Open(false);

    const HMENU menu = ::GetMenu(window->GetSafeHwnd());
    ASSERT_EQ(::GetMenuItemCount(menu), 7);
    EXPECT_EQ(CaptionOf(menu, 0), L"&File");
    EXPECT_EQ(CaptionOf(menu, 4), L"&Tools");
    EXPECT_EQ(CaptionOf(menu, 6), L"&Help");
}

TEST_F(HostedAddIn, ShowsItsButtonWithCaptionAndPicture)
{
    const RegisteredAddIn addIn(script);

    Open(false);

    const FoundButton found = FindButton(window->GetSafeHwnd(), L"Bar Button");
    ASSERT_TRUE(found.bar);
    EXPECT_TRUE(::IsWindowVisible(found.bar));
    EXPECT_EQ(found.button.iBitmap, 0);
    EXPECT_TRUE(found.button.fsStyle & BTNS_SHOWTEXT);
}

TEST_F(HostedAddIn, ShowsItsMenuEntryWithPicture)
{
    const RegisteredAddIn addIn(script);

    Open(false);

    const int place = PlaceOf(ToolsMenu(), L"Menu Entry");
    ASSERT_GE(place, 0);
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_BITMAP;
    ::GetMenuItemInfoW(ToolsMenu(), static_cast<UINT>(place), TRUE, &item);
    EXPECT_TRUE(item.hbmpItem);
}

TEST_F(HostedAddIn, HearsTheClickOfItsButton)
{
    const RegisteredAddIn addIn(script);
    Open(false);
    const FoundButton found = FindButton(window->GetSafeHwnd(), L"Bar Button");

    ::SendMessageW(window->GetSafeHwnd(), WM_COMMAND, static_cast<WPARAM>(found.button.idCommand),
                   reinterpret_cast<LPARAM>(found.bar));

    EXPECT_EQ(script.clicked, std::vector<std::wstring>{L"Bar Button"});
}

TEST_F(HostedAddIn, HearsTheClickOfItsMenuEntry)
{
    const RegisteredAddIn addIn(script);
    Open(false);
    const UINT command = ::GetMenuItemID(ToolsMenu(), PlaceOf(ToolsMenu(), L"Menu Entry"));

    ::SendMessageW(window->GetSafeHwnd(), WM_COMMAND, command, 0);

    EXPECT_EQ(script.clicked, std::vector<std::wstring>{L"Menu Entry"});
}

TEST_F(HostedAddIn, IsToldOfEveryStage)
{
    const RegisteredAddIn addIn(script);

    Open(false);
    window->TellStartupComplete();
    window.reset();

    const std::vector<std::string> expected{"OnConnection 1", "OnStartupComplete", "OnBeginShutdown",
                                            "OnDisconnection 0"};
    EXPECT_EQ(script.calls, expected);
    EXPECT_EQ(script.alive, 0);
}

TEST_F(HostedAddIn, TakesItsControlsAlongWhenItIsUnloaded)
{
    const RegisteredAddIn addIn(script);
    Open(false);

    window->GetAddIns().Unload(PlaceOfTheAddIn());
    PumpUntil([&] { return PlaceOf(ToolsMenu(), L"Menu Entry") < 0; });

    EXPECT_EQ(PlaceOf(ToolsMenu(), L"Menu Entry"), -1);
    EXPECT_FALSE(FindButton(window->GetSafeHwnd(), L"Bar Button").bar);
    EXPECT_EQ(script.alive, 0);
    EXPECT_EQ(script.calls.back(), "OnDisconnection 1");
}

TEST_F(HostedAddIn, CanBeLoadedAgain)
{
    const RegisteredAddIn addIn(script);
    Open(false);
    window->GetAddIns().Unload(PlaceOfTheAddIn());

    window->GetAddIns().Load(PlaceOfTheAddIn());

    EXPECT_EQ(AddInOfTheTests().GetState(), AddInState::loaded);
    EXPECT_EQ(script.calls.back(), "OnConnection 0");
    EXPECT_TRUE(window->Press(L"Menu Entry"));
    EXPECT_EQ(script.clicked.size(), 1U);
}

TEST_F(HostedAddIn, IsNotLoadedUnlessItAsksForIt)
{
    const RegisteredAddIn addIn(script, 0);

    Open(false);

    EXPECT_EQ(AddInOfTheTests().GetState(), AddInState::notLoaded);
    EXPECT_TRUE(script.calls.empty());
}

TEST_F(HostedAddIn, IsListedAsFailedWhenItRefusesTheConnection)
{
    script.connectResult = E_ACCESSDENIED;
    const RegisteredAddIn addIn(script);

    Open(false);

    EXPECT_EQ(AddInOfTheTests().GetState(), AddInState::failed);
    EXPECT_EQ(AddInOfTheTests().GetResult(), E_ACCESSDENIED);
    EXPECT_EQ(PlaceOf(ToolsMenu(), L"Menu Entry"), -1);
    EXPECT_EQ(script.alive, 0);
}

TEST_F(HostedAddIn, DoesNotHurtTheHostByThrowing)
{
    script.throws = true;
    const RegisteredAddIn addIn(script);

    Open(false);

    EXPECT_EQ(AddInOfTheTests().GetState(), AddInState::failed);
    EXPECT_EQ(AddInOfTheTests().GetResult(), E_UNEXPECTED);
    EXPECT_EQ(script.alive, 0);
}

TEST_F(HostedAddIn, MayUnloadItsOwnButtonsWhileOneIsClicked)
{
    const RegisteredAddIn addIn(script);
    Open(false);
    script.onClick = [&] { window->GetAddIns().Unload(PlaceOfTheAddIn()); };

    window->Press(L"Bar Button");

    EXPECT_EQ(script.alive, 0);
    EXPECT_FALSE(window->Press(L"Bar Button"));
}

TEST_F(HostedAddIn, HearsTheClickOfAnEntryOfTheHosts)
{
    script.hostCommand = IDM_READ;
    const RegisteredAddIn addIn(script);
    Open();
    ::SetFocus(Child(IDC_MESSAGES));

    window->Press(L"Read Message");

    EXPECT_EQ(script.clicked, std::vector<std::wstring>{L"&Read Message"});
    EXPECT_EQ(::GetFocus(), Child(IDC_READING));
}

TEST_F(HostedAddIn, KeepsTheHostFromWhatItsEntryWouldDo)
{
    script.hostCommand = IDM_READ;
    script.cancels = true;
    const RegisteredAddIn addIn(script);
    Open();
    ::SetFocus(Child(IDC_MESSAGES));

    window->Press(L"Read Message");

    EXPECT_EQ(script.clicked.size(), 1U);
    EXPECT_EQ(::GetFocus(), Child(IDC_MESSAGES));
}

TEST_F(HostedAddIn, LeavesNoHandlesBehindIn200Rounds)
{
    const RegisteredAddIn addIn(script);
    Open();
    window.reset();
    const HandleCounts before = HandleCounts::Now();

    for (int round = 0; round < 200; ++round)
    {
        window = std::make_unique<CMainWindow>();
        window->LoadAddIns();
        window.reset();
    }

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
    EXPECT_EQ(CountedObject::GetCount(), 0);
    EXPECT_EQ(script.alive, 0);
}
