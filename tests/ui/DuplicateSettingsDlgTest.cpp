#include "tests/ui/DuplicateSettingsDlgFixture.h"

#include "tests/ui/DialogProbe.h"
#include "tests/ui/SentMessages.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const COLORREF lightYellow = RGB(255, 245, 196);
const COLORREF blue = RGB(0, 0, 255);
const COLORREF white = RGB(255, 255, 255);

class SettingsPageItself : public SettingsPage
{
protected:
    static std::vector<std::wstring> EntriesOf(HWND page, int comboBox)
    {
        const HWND control = ::GetDlgItem(page, comboBox);
        std::vector<std::wstring> entries;
        for (LRESULT i = 0; i < ::SendMessageW(control, CB_GETCOUNT, 0, 0); ++i)
        {
            wchar_t text[260] = L"";
            ::SendMessageW(control, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            entries.emplace_back(text);
        }
        return entries;
    }
    static LRESULT SelectionOf(HWND page, int comboBox)
    {
        return ::SendMessageW(::GetDlgItem(page, comboBox), CB_GETCURSEL, 0, 0);
    }
};

TEST_F(SettingsPageItself, IsAsLargeAsItsTemplateSaysWithNothingClipped)
{
    Look(
        [&](HWND page)
        {
            EXPECT_EQ(ClientSizeOf(page), PixelsOf(page, 316, 294));
            EXPECT_EQ(ChildrenOf(page).size(), 19u);
            EXPECT_THAT(LayoutFaultsOf(page), IsEmpty());
        });
}

TEST_F(SettingsPageItself, HasTheTextsOfItsControls)
{
    const std::map<int, std::wstring> texts{{222, L"Select Time Span"},
                                            {223, L"Select Comparison Criteria"},
                                            {203, L"Text"},
                                            {204, L"Subject"},
                                            {205, L"Sender Email"},
                                            {206, L"Sender Name"},
                                            {207, L"Recipient Name"},
                                            {208, L"Internet Header"},
                                            {209, L"Attachment Files"},
                                            {210, L"Date and Time of Sending"},
                                            {224, L"Select Action "},
                                            {215, L"Folder:"},
                                            {213, L""},
                                            {214, L"Select"},
                                            {235, L""},
                                            {1, L"Run Process"},
                                            {2, L"Cancel"}};
    Look(
        [&](HWND page)
        {
            for (const auto& [control, text] : texts)
                EXPECT_EQ(TextIn(page, control), text) << control;
        });
}

TEST_F(SettingsPageItself, OffersTheTimeSpansWithAnytimeSelected)
{
    Look(
        [&](HWND page)
        {
            EXPECT_THAT(EntriesOf(page, 211),
                        ElementsAre(L"Last day", L"Last 2 days", L"Last 5 days", L"Last 10 days",
                                    L"Last 20 days", L"Last 30 days", L"Last 50 days", L"Last 75 days",
                                    L"Last 100 days", L"Last year", L"Anytime"));
            EXPECT_EQ(TextIn(page, 211), L"Anytime");
        });
}

TEST_F(SettingsPageItself, OffersTheActionsWithDeletionSelected)
{
    Look(
        [&](HWND page)
        {
            EXPECT_THAT(EntriesOf(page, 212),
                        ElementsAre(L"Delete (move to Deleted Items folder)", L"Mark as expired",
                                    L"Copy to folder...", L"Move to folder...", L"Mark with the flag",
                                    L"Delete permanently"));
            EXPECT_EQ(SelectionOf(page, 212), 0);
        });
}

TEST_F(SettingsPageItself, HasListsThatAreOnlyDroppedDown)
{
    Look(
        [&](HWND page)
        {
            for (const int comboBox : {211, 212})
            {
                EXPECT_EQ(StyleOf(page, comboBox) & 3, CBS_DROPDOWNLIST);
                EXPECT_EQ(StyleOf(page, comboBox) & CBS_SORT, 0);
            }
        });
}

TEST_F(SettingsPageItself, TicksTheThreeFixedCriteriaForGood)
{
    Look(
        [&](HWND page)
        {
            for (const int fixed : {203, 204, 205})
            {
                EXPECT_TRUE(IsChecked(page, fixed));
                EXPECT_FALSE(IsEnabled(page, fixed));
            }
            for (const int optional : {206, 207, 208, 209, 210})
            {
                EXPECT_FALSE(IsChecked(page, optional));
                EXPECT_TRUE(IsEnabled(page, optional));
            }
        });
}

TEST_F(SettingsPageItself, ShowsTheDestinationReadOnlyAndGreyedAtFirst)
{
    Look(
        [&](HWND page)
        {
            for (const int control : {213, 214, 215})
                EXPECT_FALSE(IsEnabled(page, control));
            EXPECT_EQ(StyleOf(page, 213) & (ES_READONLY | ES_AUTOHSCROLL), ES_READONLY | ES_AUTOHSCROLL);
            EXPECT_TRUE(IsEnabled(page, IDOK));
        });
}

TEST_F(SettingsPageItself, IsYellowWithThreeBlueCaptionsAndWhiteLists)
{
    Look(
        [&](HWND page)
        {
            EXPECT_EQ(ColoursOf(page, WM_CTLCOLORDLG, page).brush, lightYellow);
            for (const int control : {203, 206, 213, 215, 235, 1, 2})
            {
                const Colours colours = ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, control));
                EXPECT_EQ(colours.brush, lightYellow) << control;
                EXPECT_EQ(colours.textBackground, lightYellow) << control;
                EXPECT_NE(colours.text, blue) << control;
            }
            for (const int group : {222, 223, 224})
            {
                const Colours colours = ColoursOf(page, WM_CTLCOLORSTATIC, ::GetDlgItem(page, group));
                EXPECT_EQ(colours.text, blue);
                EXPECT_EQ(colours.brush, lightYellow);
                EXPECT_EQ(colours.textBackground, lightYellow);
            }
            for (const int comboBox : {211, 212})
            {
                const Colours colours = ColoursOf(page, WM_CTLCOLOREDIT, ::GetDlgItem(page, comboBox));
                EXPECT_EQ(colours.brush, white);
                EXPECT_EQ(colours.textBackground, white);
                EXPECT_NE(colours.text, blue);
            }
        });
}

// Not by the colours that are asked for alone: a theme has its own.
TEST_F(SettingsPageItself, DrawsItsCaptionsInBlue)
{
    Look(
        [&](HWND page)
        {
            for (const int group : {222, 223, 224})
            {
                const HWND control = ::GetDlgItem(page, group);
                std::vector<COLORREF> pixels;
                ModalDriver::RunOnThreadOf(
                    page,
                    [&] {
                        pixels = PixelsDrawnBy(control, {0, 0, ClientSizeOf(control).cx, 12});
                    });
                EXPECT_THAT(pixels, Contains(blue)) << group;
            }
        });
}

TEST_F(SettingsPageItself, DrawsItsCheckBoxesOnYellow)
{
    Look(
        [&](HWND page)
        {
            for (const int checkBox : {203, 206, 210})
            {
                const HWND control = ::GetDlgItem(page, checkBox);
                const SIZE size = ClientSizeOf(control);
                std::vector<COLORREF> pixels;
                ModalDriver::RunOnThreadOf(
                    page,
                    [&] {
                        pixels = PixelsDrawnBy(control, {size.cx - 5, 0, size.cx, size.cy});
                    });
                EXPECT_THAT(pixels, Each(lightYellow)) << checkBox;
            }
        });
}

// The status line is given its font when the page is made; that font does not live on.
TEST_F(SettingsPageItself, GivesTheStatusLineALargeFontForAMoment)
{
    LOGFONTW given{};
    const SentMessages watch(
        [&](const CWPSTRUCT& message)
        {
            if (message.message == WM_SETFONT && ::GetDlgCtrlID(message.hwnd) == 235)
                ::GetObjectW(reinterpret_cast<HGDIOBJ>(message.wParam), sizeof given, &given);
        });

    Look(
        [&](HWND page)
        {
            const LRESULT font = ::SendMessageW(::GetDlgItem(page, 235), WM_GETFONT, 0, 0);
            EXPECT_NE(font, 0);
            EXPECT_EQ(::GetObjectType(reinterpret_cast<HGDIOBJ>(font)), 0u);
        });

    EXPECT_EQ(given.lfHeight, 30);
    EXPECT_EQ(given.lfWidth, 10);
    EXPECT_EQ(given.lfWeight, 700);
    EXPECT_TRUE(given.lfItalic);
    EXPECT_TRUE(given.lfUnderline);
    EXPECT_FALSE(given.lfStrikeOut);
    EXPECT_EQ(given.lfCharSet, 1);
    EXPECT_STREQ(given.lfFaceName, L"Arial");
}

TEST_F(SettingsPageItself, GoesThroughItsControlsByTab)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            EXPECT_EQ(user.FocusOf(page), ::GetDlgItem(page, 211));
            EXPECT_EQ(::SendMessageW(page, DM_GETDEFID, 0, 0), MAKELONG(IDOK, DC_HASDEFID));
            EXPECT_THAT(TabOrderOf(page), ElementsAre(211, 206, 207, 208, 209, 210, 212, IDOK, IDCANCEL));
            ChooseAction(page, 3);
            EXPECT_THAT(TabOrderOf(page),
                        ElementsAre(211, 206, 207, 208, 209, 210, 212, 213, 214, IDOK, IDCANCEL));
            user.Click(page, IDCANCEL);
        });
}

TEST_F(SettingsPageItself, GoesThroughTheCriteriaByArrowKeys)
{
    Look(
        [](HWND page)
        {
            std::vector<int> ids;
            HWND control = ::GetDlgItem(page, 206);
            for (int i = 0; i < 5; ++i)
            {
                ids.push_back(::GetDlgCtrlID(control));
                control = ::GetNextDlgGroupItem(page, control, FALSE);
            }
            EXPECT_THAT(ids, ElementsAre(206, 207, 208, 209, 210));
            EXPECT_EQ(::GetDlgCtrlID(control), 206);
        });
}

TEST_F(SettingsPageItself, IsCancelledWithoutATraceInEveryWay)
{
    const std::vector<UserOfPage> waysOut{
        [](ModalDriver& user, HWND page) { user.Click(page, IDCANCEL); },
        [](ModalDriver& user, HWND page) { user.PressKey(page, VK_ESCAPE); },
        [](ModalDriver&, HWND page) { ::PostMessageW(page, WM_SYSCOMMAND, SC_CLOSE, 0); },
        [](ModalDriver&, HWND page) { ::PostMessageW(page, WM_CLOSE, 0, 0); },
    };
    for (const UserOfPage& leave : waysOut)
    {
        const INT_PTR result = Use(
            [&](ModalDriver& user, HWND page)
            {
                user.Click(page, IDC_SENDER_NAME);
                ChooseSpan(page, 2);
                ChooseAction(page, 1);
                leave(user, page);
            });

        EXPECT_EQ(result, IDCANCEL);
        EXPECT_EQ(closeOwner, 0);
        EXPECT_EQ(state.useSenderName, 0);
        EXPECT_EQ(state.useTimeSpan, 0);
        EXPECT_THAT(ActionFlags(), Each(0));
    }
}

TEST_F(SettingsPageItself, GivesAllItsHandlesBack)
{
    const auto useAll = [&](int rounds)
    {
        for (int i = 0; i < rounds; ++i)
            Use(
                [&](ModalDriver& user, HWND page)
                {
                    ChooseAction(page, 2);
                    user.PostClick(page, IDC_SELECT_DESTINATION);
                    user.Click(WaitForPicker(user), IDCANCEL);
                    user.PostClick(page, IDOK);
                    user.Click(WaitForMessage(user), IDOK);
                    user.Click(page, IDCANCEL);
                });
    };
    useAll(60);
    const HandleCounts before = HandleCounts::Now();

    useAll(200);

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
}
}    // namespace
