#include "ui/AboutDlg.h"

#include "res/resource.h"
#include "tests/ui/DialogProbe.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/ui/ModalDriver.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const COLORREF lightYellow = RGB(255, 245, 196);
const wchar_t licenceTitle[] = L"End User License Agreement";

SystemFacts LongestFacts()
{
    SystemFacts facts;
    facts.query = VersionQuery::extended;
    facts.platform = VER_PLATFORM_WIN32_NT;
    facts.major = 5;
    facts.minor = 2;
    facts.build = 4294967;
    facts.productType = VER_NT_WORKSTATION;
    facts.nativeArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
    facts.servicePack = L"Service Pack 2, v.1234 & Feature Pack 3";
    return facts;
}

class AboutDialog : public testing::Test
{
protected:
    // Shows the dialog on a system of those facts, lets `look` use it as the user does, and presses OK.
    static INT_PTR Show(const SystemFacts& facts, const std::function<void(ModalDriver&, HWND)>& look)
    {
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND about = self.WaitForDialog(L"About", IDC_EULA);
                look(self, about);
                self.Click(about, IDOK);
            });
        return CAboutDlg(nullptr, [&] { return facts; }).DoModal();
    }
    static INT_PTR Show(const std::function<void(ModalDriver&, HWND)>& look)
    {
        return Show(LongestFacts(), look);
    }

    static INT_PTR ShowAndPress(WORD key)
    {
        ModalDriver user([&](ModalDriver& self) { self.PressKey(self.WaitForDialog(L"About"), key); });
        return CAboutDlg().DoModal();
    }

    static std::wstring ItemText(HWND dialog, int id) { return TextOf(::GetDlgItem(dialog, id)); }
};

TEST_F(AboutDialog, IsAsLargeAsItsTemplateSays)
{
    Show([](ModalDriver&, HWND about) { EXPECT_EQ(ClientSizeOf(about), PixelsOf(about, 364, 270)); });
}

TEST_F(AboutDialog, ShowsTheProductsDetails)
{
    Show(
        [](ModalDriver&, HWND about)
        {
            for (const wchar_t* text : {L"Product Details", L"Product Name:", L"Product Version:", L"1.0.0.0",
                                        L"System Details", L"Operating System:", L"Version:",
                                        L"Service Pack:", L"Talmore Quorvex Outlook Duplicate Remover"})
                EXPECT_NE(StaticWithText(about, text), nullptr) << testing::PrintToString(text);
            EXPECT_EQ(ItemText(about, 225), L"EULA");
            EXPECT_EQ(ItemText(about, 1), L"OK");
        });
}

TEST_F(AboutDialog, ShowsThePicturesOfTheProductAndSeparators)
{
    Show(
        [](ModalDriver&, HWND about)
        {
            int icons = 0;
            int bitmaps = 0;
            for (const HWND child : ChildrenOf(about))
            {
                icons += ::SendMessageW(child, STM_GETIMAGE, IMAGE_ICON, 0) != 0;
                bitmaps += ::SendMessageW(child, STM_GETIMAGE, IMAGE_BITMAP, 0) != 0;
            }
            EXPECT_EQ(icons, 1);
            EXPECT_GE(bitmaps, 2);
        });
}

TEST_F(AboutDialog, ShowsTheSystemsDetails)
{
    Show(
        [](ModalDriver&, HWND about)
        {
            EXPECT_EQ(ItemText(about, 1026), L"Microsoft Windows XP Professional x64 Edition");
            EXPECT_EQ(ItemText(about, 1027), L"5. 2.4294967");
            EXPECT_EQ(ItemText(about, 1048), L"Service Pack 2, v.1234 & Feature Pack 3");
        });
}

TEST_F(AboutDialog, CallsServersOfVersion60Vista)
{
    SystemFacts server = LongestFacts();
    server.major = 6;
    server.minor = 0;
    server.productType = VER_NT_SERVER;

    Show(server, [](ModalDriver&, HWND about) { EXPECT_EQ(ItemText(about, 1026), L"Windows Vista"); });
}

TEST_F(AboutDialog, KnowsOnlyTheMakerOfLaterSystems)
{
    SystemFacts later = LongestFacts();
    later.major = 10;
    later.minor = 0;

    Show(later, [](ModalDriver&, HWND about) { EXPECT_EQ(ItemText(about, 1026), L"Microsoft "); });
}

TEST_F(AboutDialog, ShowsZerosWhenTheSystemDoesNotTellItsVersion)
{
    Show(SystemFacts(),
         [](ModalDriver&, HWND about)
         {
             EXPECT_EQ(ItemText(about, 1026), L"");
             EXPECT_EQ(ItemText(about, 1027), L"0. 0.0");
             EXPECT_EQ(ItemText(about, 1048), L"");
         });
}

TEST_F(AboutDialog, TellsOfTheSystemItRunsOnUnlessToldOtherwise)
{
    ModalDriver user(
        [](ModalDriver& self)
        {
            const HWND about = self.WaitForDialog(L"About");
            EXPECT_EQ(ItemText(about, 1026), SystemName(ReadSystemFacts()));
            EXPECT_EQ(ItemText(about, 1027), SystemVersion(ReadSystemFacts()));
            EXPECT_EQ(ItemText(about, 1048), ReadSystemFacts().servicePack);
            self.Click(about, IDOK);
        });

    EXPECT_EQ(CAboutDlg().DoModal(), IDOK);
}

TEST_F(AboutDialog, HasRoomForTheLongestTexts)
{
    Show([](ModalDriver&, HWND about) { EXPECT_THAT(LayoutFaultsOf(about), IsEmpty()); });
}

TEST_F(AboutDialog, HasBoldHeadingsAboveASeparatorOfTheirOwn)
{
    Show(
        [](ModalDriver&, HWND about)
        {
            for (const wchar_t* text : {L"Product Details", L"System Details"})
            {
                const HWND heading = StaticWithText(about, text);
                const HWND separator = ::GetWindow(heading, GW_HWNDNEXT);
                EXPECT_EQ(FontOf(heading).lfWeight, FW_BOLD);
                EXPECT_EQ(FontOf(heading).lfHeight, FontOf(about).lfHeight);
                EXPECT_NE(::SendMessageW(separator, STM_GETIMAGE, IMAGE_BITMAP, 0), 0);
                EXPECT_GE(RectIn(about, separator).top, RectIn(about, heading).bottom);
            }
            EXPECT_LT(FontOf(StaticWithText(about, L"Version:")).lfWeight, FW_BOLD);
        });
}

TEST_F(AboutDialog, IsYellowEverywhere)
{
    Show(
        [](ModalDriver&, HWND about)
        {
            std::vector<Colours> answers{ColoursOf(about, WM_CTLCOLORDLG, about),
                                         ColoursOf(about, WM_CTLCOLORBTN, ::GetDlgItem(about, IDOK)),
                                         ColoursOf(about, WM_CTLCOLORBTN, ::GetDlgItem(about, IDC_EULA))};
            for (const HWND child : ChildrenOf(about))
                answers.push_back(ColoursOf(about, WM_CTLCOLORSTATIC, child));
            for (const Colours& colours : answers)
            {
                EXPECT_EQ(colours.brushStyle, static_cast<UINT>(BS_SOLID));
                EXPECT_EQ(colours.brush, lightYellow);
                EXPECT_EQ(colours.textBackground, lightYellow);
            }
        });
}

TEST_F(AboutDialog, ClosesWithEitherKeyOfItsOkButtonAndIsCancelledByEscape)
{
    EXPECT_EQ(ShowAndPress(VK_RETURN), IDOK);
    EXPECT_EQ(ShowAndPress(VK_SPACE), IDOK);
    EXPECT_EQ(ShowAndPress(VK_ESCAPE), IDCANCEL);
}

TEST_F(AboutDialog, GoesFromButtonToButtonByTab)
{
    Show(
        [](ModalDriver& user, HWND about)
        {
            EXPECT_THAT(TabOrderOf(about), ElementsAre(IDOK, IDC_EULA));
            EXPECT_EQ(user.FocusOf(about), ::GetDlgItem(about, IDOK));
            user.PressKey(about, VK_TAB);
            user.WaitUntil([&] { return user.FocusOf(about) == ::GetDlgItem(about, IDC_EULA); },
                           "the focus on the second button");
            user.PressKey(about, VK_LEFT);
            user.WaitUntil([&] { return user.FocusOf(about) == ::GetDlgItem(about, IDOK); },
                           "the focus on the first button");
        });
}

TEST_F(AboutDialog, OpensTheLicenceOnTopOfItself)
{
    const INT_PTR result = Show(
        [](ModalDriver& user, HWND about)
        {
            user.PostClick(about, IDC_EULA);
            const HWND licence = user.WaitForDialog(licenceTitle);
            EXPECT_FALSE(::IsWindowEnabled(about));
            EXPECT_EQ(::GetWindow(licence, GW_OWNER), about);
            user.Click(licence, IDOK);
            user.WaitForEnd(licence);
            EXPECT_TRUE(::IsWindowEnabled(about));
            EXPECT_TRUE(::IsWindowVisible(about));
        });

    EXPECT_EQ(result, IDOK);
}

TEST_F(AboutDialog, OpensTheLicenceByKey)
{
    Show(
        [](ModalDriver& user, HWND about)
        {
            user.PressKey(about, VK_TAB);
            user.WaitUntil([&] { return user.FocusOf(about) == ::GetDlgItem(about, IDC_EULA); },
                           "the focus on the second button");
            user.PressKey(about, VK_RETURN);
            const HWND licence = user.WaitForDialog(licenceTitle);
            user.PressKey(licence, VK_ESCAPE);
            user.WaitForEnd(licence);
        });
}

TEST_F(AboutDialog, MayBeShownAgain)
{
    ModalDriver user(
        [](ModalDriver& self)
        {
            for (int time = 0; time < 2; ++time)
            {
                const HWND about = self.WaitForDialog(L"About");
                EXPECT_EQ(FontOf(StaticWithText(about, L"System Details")).lfWeight, FW_BOLD);
                self.Click(about, IDOK);
                self.WaitForEnd(about);
            }
        });
    CAboutDlg dialog;

    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_EQ(dialog.DoModal(), IDOK);
}
}    // namespace
