// What mouse and keys do to the window itself.
#include "explorer/Metrics.h"
#include "tests/explorer/FoundButton.h"
#include "tests/explorer/WindowFixture.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
// Marks Shift as held down for this thread.
class HeldShift
{
public:
    HeldShift() { Set(0x80); }
    HeldShift(const HeldShift&) = delete;
    HeldShift& operator=(const HeldShift&) = delete;
    ~HeldShift() { Set(0); }

private:
    static void Set(BYTE state)
    {
        BYTE keys[256] = {};
        ::GetKeyboardState(keys);
        keys[VK_SHIFT] = state;
        ::SetKeyboardState(keys);
    }
};

class WindowInput : public WindowFixture
{
protected:
    WindowInput() { Open(); }

    RECT PaneArea(int id) const
    {
        RECT area{};
        ::GetWindowRect(Child(id), &area);
        ::MapWindowPoints(nullptr, window->GetSafeHwnd(), reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    int WidthOf(int id) const { return PaneArea(id).right - PaneArea(id).left; }
    int HeightOf(int id) const { return PaneArea(id).bottom - PaneArea(id).top; }

    void Mouse(UINT message, POINT place) const
    {
        ::SendMessageW(window->GetSafeHwnd(), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON,
                       MAKELPARAM(place.x, place.y));
    }
    void Drag(POINT from, POINT to) const
    {
        Mouse(WM_LBUTTONDOWN, from);
        Mouse(WM_MOUSEMOVE, to);
        Mouse(WM_LBUTTONUP, to);
    }
    POINT UprightGap() const
    {
        const RECT folders = PaneArea(IDC_FOLDERS);
        return {folders.right + 1, (folders.top + folders.bottom) / 2};
    }
    POINT LevelGap() const
    {
        const RECT messages = PaneArea(IDC_MESSAGES);
        return {(messages.left + messages.right) / 2, messages.bottom + 1};
    }
    void Resize(int width, int height) const
    {
        ::SetWindowPos(window->GetSafeHwnd(), nullptr, 0, 0, width, height,
                       SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    double MessagesShare() const
    {
        const double height = PaneArea(IDC_READING).bottom - PaneArea(IDC_MESSAGES).top;
        return HeightOf(IDC_MESSAGES) / height;
    }

    // Handles the key as the program's loop does.
    void PressKey(WORD key)
    {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
        for (MSG message{}; ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
        {
            if (window->TranslateKey(message))
                continue;
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
};
}    // namespace

TEST_F(WindowInput, DragsTheFoldersWider)
{
    const int before = WidthOf(IDC_FOLDERS);
    const POINT gap = UprightGap();

    Drag(gap, {gap.x + 100, gap.y});

    EXPECT_NEAR(WidthOf(IDC_FOLDERS), before + 100, 2);
    EXPECT_GT(PaneArea(IDC_MESSAGES).left, PaneArea(IDC_FOLDERS).right);
}

TEST_F(WindowInput, KeepsEveryPaneUsableHoweverFarItDrags)
{
    const int smallest = Scaled(50);

    Drag(UprightGap(), {-500, 100});
    EXPECT_GE(WidthOf(IDC_FOLDERS), smallest);
    Drag(UprightGap(), {5000, 100});
    EXPECT_GE(WidthOf(IDC_MESSAGES), smallest);
    Drag(LevelGap(), {500, -500});
    EXPECT_GE(HeightOf(IDC_MESSAGES), smallest);
    Drag(LevelGap(), {500, 5000});
    EXPECT_GE(HeightOf(IDC_READING), smallest);
}

TEST_F(WindowInput, KeepsTheDraggedShareWhenTheWindowGrows)
{
    const POINT gap = LevelGap();
    Drag(gap, {gap.x, gap.y - Scaled(80)});
    const double share = MessagesShare();
    const int folders = WidthOf(IDC_FOLDERS);

    Resize(Scaled(1200), Scaled(900));

    EXPECT_NEAR(MessagesShare(), share, 0.01);
    EXPECT_EQ(WidthOf(IDC_FOLDERS), folders);
}

TEST_F(WindowInput, DragsNothingOnceTheButtonIsUp)
{
    const POINT gap = UprightGap();
    Drag(gap, {gap.x + 50, gap.y});
    const int after = WidthOf(IDC_FOLDERS);

    Mouse(WM_MOUSEMOVE, {gap.x + 200, gap.y});

    EXPECT_EQ(WidthOf(IDC_FOLDERS), after);
}

TEST_F(WindowInput, DragsNothingOnceAnotherWindowHasTheMouse)
{
    const POINT gap = UprightGap();
    Mouse(WM_LBUTTONDOWN, gap);
    const int before = WidthOf(IDC_FOLDERS);
    ::SetCapture(Child(IDC_READING));

    Mouse(WM_MOUSEMOVE, {gap.x + 200, gap.y});
    ::ReleaseCapture();

    EXPECT_EQ(WidthOf(IDC_FOLDERS), before);
}

TEST_F(WindowInput, GoesRoundThePanesWithTab)
{
    ::SetFocus(Child(IDC_FOLDERS));

    PressKey(VK_TAB);
    EXPECT_EQ(::GetFocus(), Child(IDC_MESSAGES));
    PressKey(VK_TAB);
    EXPECT_EQ(::GetFocus(), Child(IDC_READING));
    PressKey(VK_TAB);
    EXPECT_EQ(::GetFocus(), Child(IDC_FOLDERS));
}

TEST_F(WindowInput, GoesRoundThePanesBackwardsWithShift)
{
    ::SetFocus(Child(IDC_FOLDERS));
    const HeldShift shift;

    PressKey(VK_F6);
    EXPECT_EQ(::GetFocus(), Child(IDC_READING));
    PressKey(VK_TAB);
    EXPECT_EQ(::GetFocus(), Child(IDC_MESSAGES));
}

TEST_F(WindowInput, GoesToTheNextPaneWithF6)
{
    ::SetFocus(Child(IDC_MESSAGES));

    PressKey(VK_F6);

    EXPECT_EQ(::GetFocus(), Child(IDC_READING));
}

TEST_F(WindowInput, ReadsTheFolderAgainWithF5)
{
    SelectFolder(L"Inbox");
    file.Add({{.subject = "Just come"}});
    ASSERT_EQ(Messages().GetItemCount(), 0);
    ::SetFocus(Child(IDC_MESSAGES));

    PressKey(VK_F5);

    ASSERT_EQ(Messages().GetItemCount(), 1);
    EXPECT_EQ(Messages().GetItemText(0, 1), L"Just come");
}

TEST_F(WindowInput, TellsWhatAToolBarButtonDoes)
{
    const FoundButton found = FindButton(window->GetSafeHwnd(), L"Refresh");
    ASSERT_TRUE(found.bar);
    const auto tips = reinterpret_cast<HWND>(::SendMessageW(found.bar, TB_GETTOOLTIPS, 0, 0));
    wchar_t text[200] = L"";
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.hwnd = found.bar;
    tool.uId = static_cast<UINT_PTR>(found.button.idCommand);
    tool.lpszText = text;

    ::SendMessageW(tips, TTM_GETTEXTW, ARRAYSIZE(text), reinterpret_cast<LPARAM>(&tool));

    EXPECT_STREQ(text, L"Read the folders and messages again");
}
