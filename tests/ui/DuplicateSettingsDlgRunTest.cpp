#include "tests/ui/DuplicateSettingsDlgFixture.h"

#include "engine/LocalTime.h"
#include "tests/ui/SentMessages.h"
#include "win/Variant.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

using testing::ElementsAre;

namespace
{
constexpr int copyToFolder = 2;

// Keeps the next dialog of the thread from being made.
class NoFurtherDialog
{
public:
    NoFurtherDialog()
    {
        hook = ::SetWindowsHookExW(WH_CBT, &NoFurtherDialog::Hook, nullptr, ::GetCurrentThreadId());
    }
    NoFurtherDialog(const NoFurtherDialog&) = delete;
    NoFurtherDialog& operator=(const NoFurtherDialog&) = delete;
    ~NoFurtherDialog() { Unhook(); }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam)
    {
        wchar_t className[8] = L"";
        if (code == HCBT_CREATEWND)
            ::GetClassNameW(reinterpret_cast<HWND>(wParam), className, ARRAYSIZE(className));
        if (std::wstring_view(className) != L"#32770")
            return ::CallNextHookEx(nullptr, code, wParam, lParam);
        Unhook();
        return 1;
    }
    static void Unhook()
    {
        if (hook)
            ::UnhookWindowsHookEx(hook);
        hook = nullptr;
    }

    static inline HHOOK hook = nullptr;
};

class SettingsPageRun : public SettingsPage
{
protected:
    std::vector<LONG> Criteria() const
    {
        return {state.useSenderName, state.useRecipientName, state.useInternetHeader, state.useAttachments,
                state.useSendTime};
    }
    // Whether the cut-off lies those days before now, the test having begun at `start`.
    void ExpectCutOff(UnixSeconds start, int days) const
    {
        const UnixSeconds back = days * UnixSeconds{86400};
        ASSERT_EQ(state.cutoffDate.vt, VT_DATE);
        EXPECT_GE(state.cutoffDate.date, ToLocalDate(start - back, TimeZone()).value);
        EXPECT_LE(state.cutoffDate.date, ToLocalDate(CurrentUnixSeconds() - back, TimeZone()).value);
    }
};

TEST_F(SettingsPageRun, TakesEachCriterionFromItsCheckBox)
{
    const std::vector<int> checkBoxes{206, 207, 208, 209, 210};
    for (std::size_t i = 0; i < checkBoxes.size(); ++i)
    {
        LoadAgain();

        Run([&](HWND page) { ::SendMessageW(::GetDlgItem(page, checkBoxes[i]), BM_CLICK, 0, 0); });

        std::vector<LONG> expected(5, 0);
        expected[i] = 1;
        EXPECT_EQ(Criteria(), expected) << checkBoxes[i];
    }
}

TEST_F(SettingsPageRun, ReadsTheCheckBoxesInOrderWithTheTimeBeforeTheAttachments)
{
    std::vector<int> asked;
    const SentMessages watch(
        [&](const CWPSTRUCT& message)
        {
            if (message.message == BM_GETCHECK)
                asked.push_back(::GetDlgCtrlID(message.hwnd));
        });

    Run();

    EXPECT_THAT(asked, ElementsAre(206, 207, 208, 210, 209));
}

TEST_F(SettingsPageRun, GoesBackTheDaysOfTheChosenSpan)
{
    const std::vector<int> days{1, 2, 5, 10, 20, 30, 50, 75, 100, 365};
    for (std::size_t span = 0; span < days.size(); ++span)
    {
        LoadAgain();
        const UnixSeconds start = CurrentUnixSeconds();

        Run([&](HWND page) { ChooseSpan(page, static_cast<int>(span)); });

        EXPECT_EQ(state.useTimeSpan, 1);
        ExpectCutOff(start, days[span]);
    }
}

TEST_F(SettingsPageRun, LeavesTheCutOffAloneForAnytime)
{
    state.cutoffDate = DateVariant(40000);

    Run();

    EXPECT_EQ(state.useTimeSpan, 0);
    EXPECT_EQ(state.cutoffDate.date, 40000);
}

TEST_F(SettingsPageRun, LeavesTheCutOffAloneWithoutASelection)
{
    Run([&](HWND page) { TakeSelectionAway(page, IDC_TIME_SPAN); });

    EXPECT_EQ(state.useTimeSpan, 0);
    EXPECT_EQ(state.cutoffDate.vt, VT_EMPTY);
}

TEST_F(SettingsPageRun, CarriesTheSpanOfARefusedAttemptOverToAnytime)
{
    const UnixSeconds start = CurrentUnixSeconds();

    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.Click(page, IDC_SENDER_NAME);
            ChooseSpan(page, 2);
            ChooseAction(page, copyToFolder);
            user.PostClick(page, IDOK);
            user.Click(WaitForMessage(user), IDOK);
            ::SendMessageW(page, WM_NULL, 0, 0);
            EXPECT_EQ(state.useSenderName, 1);
            EXPECT_EQ(state.useTimeSpan, 1);
            user.Click(page, IDC_SENDER_NAME);
            ChooseSpan(page, 10);
            ChooseAction(page, 0);
            user.PostClick(page, IDOK);
            CloseResults(user, WaitForResults(user));
        });

    EXPECT_EQ(state.useSenderName, 0);
    EXPECT_EQ(state.useTimeSpan, 1);
    ExpectCutOff(start, 5);
    EXPECT_EQ(ActionFlags(), (std::vector<LONG>{1, 0, 0, 0, 0, 0}));
}

TEST_F(SettingsPageRun, HidesThePageAndClosesItAndItsOwnerAfterTheRun)
{
    const INT_PTR result = Use(
        [&](ModalDriver& user, HWND page)
        {
            user.PostClick(page, IDOK);
            const HWND results = WaitForResults(user);
            EXPECT_EQ(closeOwner, 1);
            EXPECT_FALSE(::IsWindowVisible(page));
            EXPECT_TRUE(::IsWindow(page));
            CloseResults(user, results);
        });

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(closeOwner, 1);
    EXPECT_EQ(store.deletedItems.messages.size(), 2u);
}

TEST_F(SettingsPageRun, TellsTheOwnerAgainWhenItClosesAfterTheRun)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.PostClick(page, IDOK);
            const HWND results = WaitForResults(user);
            closeOwner = 0;
            CloseResults(user, results);
        });

    EXPECT_EQ(closeOwner, 1);
}

TEST_F(SettingsPageRun, IsStartedByEnterInAnyControl)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.PressKey(page, VK_RETURN);
            CloseResults(user, WaitForResults(user));
        });

    EXPECT_EQ(closeOwner, 1);
}

TEST_F(SettingsPageRun, ClosesThePageAlsoWhenTheResultsCannotBeShown)
{
    std::optional<NoFurtherDialog> refused;

    Use(
        [&](ModalDriver& user, HWND page)
        {
            ModalDriver::RunOnThreadOf(page, [&] { refused.emplace(); });
            user.PostClick(page, IDOK);
            user.Click(user.WaitForDialog(title), IDOK);
            user.WaitForEnd(page);
        });

    EXPECT_EQ(closeOwner, 1);
    EXPECT_EQ(store.deletedItems.messages.size(), 0u);
}
}    // namespace
