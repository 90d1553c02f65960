#include "ui/MsgDlg.h"

#include "res/resource.h"
#include "tests/ui/DialogProbe.h"
#include "tests/ui/ModalDriver.h"
#include "win/StringTable.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";
const COLORREF lightYellow = RGB(255, 245, 196);

class MessageBoxDialog : public testing::Test
{
protected:
    const StringTable strings{::GetModuleHandleW(nullptr)};

    // Shows the message, lets `look` see it as the user does, and presses OK; returns what the box ended
    // with.
    template <typename Look>
    static INT_PTR Show(const std::wstring& message, Look look)
    {
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND box = self.WaitForDialog(title, IDC_MESSAGE_TEXT);
                look(box);
                self.Click(box, IDOK);
            });
        CMsgDlg dialog;
        dialog.message = message;
        return dialog.DoModal();
    }

    static INT_PTR ShowAndPress(WORD key)
    {
        ModalDriver user([&](ModalDriver& self) { self.PressKey(self.WaitForDialog(title), key); });
        CMsgDlg dialog;
        dialog.message = L"Text";
        return dialog.DoModal();
    }
};

TEST_F(MessageBoxDialog, IsAsLargeAsItsTemplateSays)
{
    Show(L"Text",
         [](HWND box)
         {
             const HWND text = ::GetDlgItem(box, 235);
             EXPECT_EQ(ClientSizeOf(box), PixelsOf(box, 220, 89));
             EXPECT_EQ(ClientSizeOf(text), PixelsOf(box, 152, 48));
         });
}

TEST_F(MessageBoxDialog, ShowsAPictureTheTextAndOneButton)
{
    Show(L"Text",
         [](HWND box)
         {
             const std::vector<HWND> children = ChildrenOf(box);
             ASSERT_EQ(children.size(), 3U);
             EXPECT_NE(::SendMessageW(children[0], STM_GETIMAGE, IMAGE_BITMAP, 0), 0);
             EXPECT_EQ(TextOf(::GetDlgItem(box, 235)), L"Text");
             EXPECT_EQ(TextOf(::GetDlgItem(box, IDOK)), L"OK");
             EXPECT_LT(RectIn(box, children[0]).right, RectIn(box, children[1]).left);
             EXPECT_THAT(LayoutFaultsOf(box), IsEmpty());
         });
}

TEST_F(MessageBoxDialog, IsYellowEverywhere)
{
    Show(L"Text",
         [](HWND box)
         {
             for (const HWND asking : {box, ::GetDlgItem(box, 235), ChildrenOf(box)[0]})
             {
                 const Colours colours =
                     ColoursOf(box, asking == box ? WM_CTLCOLORDLG : WM_CTLCOLORSTATIC, asking);
                 EXPECT_EQ(colours.brushStyle, static_cast<UINT>(BS_SOLID));
                 EXPECT_EQ(colours.brush, lightYellow);
                 EXPECT_EQ(colours.textBackground, lightYellow);
             }
             const Colours button = ColoursOf(box, WM_CTLCOLORBTN, ::GetDlgItem(box, IDOK));
             EXPECT_EQ(button.brush, lightYellow);
             EXPECT_EQ(button.textBackground, lightYellow);
         });
}

TEST_F(MessageBoxDialog, ShowsAnEmptyLineBetweenParagraphs)
{
    SIZE oneLine{};
    SIZE twoParagraphs{};
    std::wstring shown;

    Show(L"One", [&](HWND box) { oneLine = TextSizeOf(::GetDlgItem(box, 235)); });
    Show(L"One\n\nTwo",
         [&](HWND box)
         {
             shown = TextOf(::GetDlgItem(box, 235));
             twoParagraphs = TextSizeOf(::GetDlgItem(box, 235));
         });

    EXPECT_EQ(shown, L"One\n\nTwo");
    EXPECT_EQ(twoParagraphs.cy, 3 * oneLine.cy);
}

TEST_F(MessageBoxDialog, ShowsAnAmpersandAsItIs)
{
    Show(L"Marked & moved",
         [](HWND box) { EXPECT_TRUE(::GetWindowLongPtrW(::GetDlgItem(box, 235), GWL_STYLE) & SS_NOPREFIX); });
}

TEST_F(MessageBoxDialog, HasRoomForEveryMessageOfTheProduct)
{
    std::vector<std::wstring> messages{
        strings.Format(IDS_RUN_ABORTED, {2147483647L}),
        strings.Load(IDS_SELECT_DESTINATION),
        strings.Load(IDS_SELECT_A_FOLDER),
    };
    for (UINT action = IDS_ACTION_FLAG; action <= IDS_ACTION_DELETE_PERMANENTLY; ++action)
        messages.push_back(strings.Format(IDS_RUN_COMPLETED, {2147483647L, strings.Load(action)}));

    for (const std::wstring& message : messages)
        Show(message,
             [&](HWND box)
             {
                 EXPECT_EQ(TextOf(::GetDlgItem(box, 235)), message);
                 EXPECT_TRUE(TextFits(::GetDlgItem(box, 235))) << testing::PrintToString(message);
             });
}

TEST_F(MessageBoxDialog, ShowsNothingWithoutAMessage)
{
    Show(L"", [](HWND box) { EXPECT_EQ(TextOf(::GetDlgItem(box, 235)), L""); });
}

TEST_F(MessageBoxDialog, ReturnsWhenOkIsPressed)
{
    EXPECT_EQ(Show(L"Text", [](HWND) {}), IDOK);
}

TEST_F(MessageBoxDialog, TakesEnterAndSpaceAsOk)
{
    EXPECT_EQ(ShowAndPress(VK_RETURN), IDOK);
    EXPECT_EQ(ShowAndPress(VK_SPACE), IDOK);
}

TEST_F(MessageBoxDialog, IsCancelledByEscape)
{
    EXPECT_EQ(ShowAndPress(VK_ESCAPE), IDCANCEL);
}

TEST_F(MessageBoxDialog, IsCancelledByItsCloseBox)
{
    ModalDriver user([](ModalDriver& self)
                     { ::PostMessageW(self.WaitForDialog(title), WM_SYSCOMMAND, SC_CLOSE, 0); });
    CMsgDlg dialog;

    const INT_PTR result = dialog.DoModal();

    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(MessageBoxDialog, StartsWithTheFocusOnItsOnlyTabStop)
{
    ModalDriver user(
        [](ModalDriver& self)
        {
            const HWND box = self.WaitForDialog(title);
            EXPECT_THAT(TabOrderOf(box), ElementsAre(IDOK));
            EXPECT_EQ(self.FocusOf(box), ::GetDlgItem(box, IDOK));
            EXPECT_EQ(::SendMessageW(box, DM_GETDEFID, 0, 0), MAKELONG(IDOK, DC_HASDEFID));
            self.PressKey(box, VK_RETURN);
        });
    CMsgDlg dialog;

    dialog.DoModal();
}

TEST_F(MessageBoxDialog, DisablesItsOwnerWhileItIsShown)
{
    CMsgDlg owner;
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND beneath = self.WaitForDialog(title);
            std::thread opener([&]
                               { ModalDriver::RunOnThreadOf(beneath, [&] { CMsgDlg(&owner).DoModal(); }); });
            const HWND onTop = self.WaitForDialog(title);
            EXPECT_EQ(::GetWindow(onTop, GW_OWNER), beneath);
            EXPECT_FALSE(::IsWindowEnabled(beneath));
            self.Click(onTop, IDOK);
            opener.join();
            EXPECT_TRUE(::IsWindowEnabled(beneath));
            self.Click(beneath, IDOK);
        });

    EXPECT_EQ(owner.DoModal(), IDOK);
}

TEST_F(MessageBoxDialog, NeedsNoOwner)
{
    Show(L"Text", [](HWND box) { EXPECT_EQ(::GetWindow(box, GW_OWNER), nullptr); });
}

TEST_F(MessageBoxDialog, RunsOnAnyThread)
{
    INT_PTR result = 0;
    ModalDriver user([](ModalDriver& self) { self.Click(self.WaitForDialog(title), IDOK); });

    std::thread worker(
        [&]
        {
            CMsgDlg dialog;
            result = dialog.DoModal();
        });
    worker.join();

    EXPECT_EQ(result, IDOK);
}
}    // namespace
