#include "tests/ui/DuplicateSettingsDlgFixture.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::Each;

namespace
{
constexpr int markAsExpired = 1;
constexpr int copyToFolder = 2;
constexpr int moveToFolder = 3;

class SettingsPageAction : public SettingsPage
{
protected:
    static bool IsDestinationEnabled(HWND page)
    {
        const bool enabled = IsEnabled(page, 215);
        EXPECT_EQ(IsEnabled(page, 213), enabled);
        EXPECT_EQ(IsEnabled(page, 214), enabled);
        return enabled;
    }
    // Opens the picker, lets `pick` use it, and waits until it has gone.
    void Pick(ModalDriver& user, HWND page, const std::function<void(HWND picker)>& pick)
    {
        user.PostClick(page, 214);
        const HWND picker = WaitForPicker(user);
        pick(picker);
        user.WaitForEnd(picker);
        // Answered when the page has taken over what was picked.
        ::SendMessageW(page, WM_NULL, 0, 0);
    }
    void PickArchive(ModalDriver& user, HWND page)
    {
        Pick(user, page,
             [&](HWND picker)
             {
                 const auto item = static_cast<WPARAM>(state.folders[2].treeItem);
                 ::SendMessageW(::GetDlgItem(picker, IDC_DESTINATION_TREE), TVM_SELECTITEM, TVGN_CARET,
                                static_cast<LPARAM>(item));
                 user.Click(picker, IDOK);
             });
    }
    // Presses "Run Process", which is refused; `look` sees the page and the message.
    void BeRefused(
        ModalDriver& user, HWND page, const std::function<void(HWND message)>& look = [](HWND) {})
    {
        user.PostClick(page, IDOK);
        const HWND message = WaitForMessage(user);
        look(message);
        user.Click(message, IDOK);
        user.WaitForEnd(message);
        ::SendMessageW(page, WM_NULL, 0, 0);
    }
};

TEST_F(SettingsPageAction, EnablesTheDestinationForCopyAndMoveOnly)
{
    const std::vector<bool> needed{false, false, true, true, false, false};
    Look(
        [&](HWND page)
        {
            for (const bool firstWithFolder : {false, true})
                for (int action = 0; action < 6; ++action)
                {
                    ChooseAction(page, firstWithFolder ? copyToFolder : markAsExpired);
                    ChooseAction(page, action);
                    EXPECT_EQ(IsDestinationEnabled(page), needed[static_cast<std::size_t>(action)]) << action;
                }
        });
}

TEST_F(SettingsPageAction, LeavesTheDestinationAsItIsWithoutASelection)
{
    Look(
        [&](HWND page)
        {
            ChooseAction(page, copyToFolder);
            TakeSelectionAway(page, IDC_ACTION);
            EXPECT_TRUE(IsDestinationEnabled(page));
        });
}

TEST_F(SettingsPageAction, IsChosenByKeyboardToo)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ::SendMessageW(page, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(page, 212)), TRUE);
            user.PressKey(page, VK_DOWN);
            user.PressKey(page, VK_DOWN);
            user.WaitUntil([&] { return IsEnabled(page, 214); }, "the destination to be enabled");
            // Answered when the change has been handled whole.
            ::SendMessageW(page, WM_NULL, 0, 0);
            EXPECT_TRUE(IsDestinationEnabled(page));
            EXPECT_EQ(TextIn(page, 212), L"Copy to folder...");
            user.PressKey(page, VK_ESCAPE);
        });
}

TEST_F(SettingsPageAction, ShowsTheNameOfThePickedFolder)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, copyToFolder);
            PickArchive(user, page);
            EXPECT_EQ(TextIn(page, 213), L"Archive");
            EXPECT_TRUE(::IsWindowVisible(page));
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(state.destFolderPath, L"Archive");
    EXPECT_EQ(state.destFolder.GetDispatch(), state.folders[2].folder.GetDispatch());
}

TEST_F(SettingsPageAction, ForgetsTheDestinationWhenThePickerIsCancelled)
{
    const std::vector<std::function<void(HWND)>> waysOut{
        [](HWND picker) { ::PostMessageW(picker, WM_COMMAND, IDCANCEL, 0); },
        [](HWND picker) { ::PostMessageW(picker, WM_CLOSE, 0, 0); },
    };
    for (const auto& leave : waysOut)
        Use(
            [&](ModalDriver& user, HWND page)
            {
                ChooseAction(page, copyToFolder);
                PickArchive(user, page);
                Pick(user, page, leave);
                EXPECT_EQ(TextIn(page, 213), L"");
                BeRefused(user, page);
                EXPECT_TRUE(IsEnabled(page, IDOK));
                user.Click(page, IDCANCEL);
            });

    EXPECT_EQ(state.destFolderPath, L"");
    EXPECT_FALSE(state.destFolder);
}

TEST_F(SettingsPageAction, HasForgottenTheDestinationBeforeThePickerIsShown)
{
    state.folders.resize(0);
    state.destFolderPath = L"Archive";
    state.destFolder = store.MakeFolder(*archive);
    const int alive = store.log.liveObjects;
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, copyToFolder);
            Pick(user, page,
                 [&](HWND picker)
                 {
                     EXPECT_EQ(state.destFolderPath, L"");
                     EXPECT_EQ(store.log.liveObjects, alive - 1);
                     user.Click(picker, IDCANCEL);
                 });
            user.Click(page, IDCANCEL);
        });
}

TEST_F(SettingsPageAction, ShowsNoDestinationWhenThePickerCannotBeMade)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, copyToFolder);
            PickArchive(user, page);
            store.log.failAt = store.log.lines.size() + 1;
            user.PostClick(page, 214);
            const HWND report = user.WaitForDialog(title);
            user.Click(report, IDOK);
            user.WaitForEnd(report);
            user.WaitUntil([&] { return ::IsWindowEnabled(page) != FALSE; }, "the page to be usable again");
            ::SendMessageW(page, WM_NULL, 0, 0);
            EXPECT_EQ(TextIn(page, 213), L"");
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(state.destFolderPath, L"");
    EXPECT_FALSE(state.destFolder);
}

TEST_F(SettingsPageAction, KeepsTheDestinationsTextWhenItIsNoLongerNeeded)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, moveToFolder);
            PickArchive(user, page);
            ChooseAction(page, markAsExpired);
            EXPECT_FALSE(IsDestinationEnabled(page));
            EXPECT_EQ(TextIn(page, 213), L"Archive");
            user.PostClick(page, IDOK);
            CloseResults(user, WaitForResults(user));
        });

    EXPECT_EQ(state.actionExpire, 1);
    EXPECT_EQ(state.actionMove, 0);
}

TEST_F(SettingsPageAction, DoesNotAskForAFolderThatItDoesNotNeed)
{
    Run([&](HWND page) { ChooseAction(page, markAsExpired); });

    EXPECT_EQ(state.actionExpire, 1);
}

TEST_F(SettingsPageAction, AsksForTheDestinationOfACopyOrMove)
{
    for (const int action : {copyToFolder, moveToFolder})
        Use(
            [&](ModalDriver& user, HWND page)
            {
                ChooseAction(page, action);
                BeRefused(user, page,
                          [&](HWND message)
                          {
                              EXPECT_EQ(TextIn(message, IDC_MESSAGE_TEXT),
                                        L"Click 'Select' button and specify destination folder.");
                              EXPECT_EQ(TextIn(page, 235), L"Please wait... Collecting information...");
                              EXPECT_FALSE(IsEnabled(page, IDOK));
                              EXPECT_TRUE(::IsWindowVisible(page));
                              EXPECT_FALSE(::IsWindowEnabled(page));
                          });
                EXPECT_EQ(TextIn(page, 235), L"");
                EXPECT_TRUE(IsEnabled(page, IDOK));
                EXPECT_TRUE(::IsWindowEnabled(page));
                user.Click(page, IDCANCEL);
            });

    EXPECT_EQ(closeOwner, 0);
    EXPECT_THAT(ActionFlags(), Each(0));
    EXPECT_EQ(state.actionName, L"");
}

TEST_F(SettingsPageAction, StaysUsableByKeyboardAfterARefusal)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, copyToFolder);
            ::SendMessageW(page, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(page, IDOK)), TRUE);
            BeRefused(user, page);
            EXPECT_EQ(user.FocusOf(page), ::GetDlgItem(page, IDOK));
            user.PressKey(page, VK_ESCAPE);
        });
}

TEST_F(SettingsPageAction, ClosesTheOwnerWhenItIsClosedWhileItRefuses)
{
    Use(
        [&](ModalDriver& user, HWND page)
        {
            ChooseAction(page, copyToFolder);
            BeRefused(user, page, [&](HWND) { ::SendMessageW(page, WM_CLOSE, 0, 0); });
        });

    EXPECT_EQ(closeOwner, 1);
}

TEST_F(SettingsPageAction, SetsOneFlagAndItsNameForEachAction)
{
    const std::vector<std::wstring> names{L"Delete (move to Deleted Items folder)",
                                          L"Mark as expired",
                                          L"Copy to folder...",
                                          L"Move to folder...",
                                          L"Mark with the flag",
                                          L"Delete permanently"};
    for (std::size_t action = 0; action < names.size(); ++action)
    {
        LoadAgain();
        state.destFolderPath = L"Archive";
        state.destFolder = state.folders[2].folder;

        Run([&](HWND page) { ChooseAction(page, static_cast<int>(action)); });

        std::vector<LONG> expected(6, 0);
        expected[action] = 1;
        EXPECT_EQ(ActionFlags(), expected);
        EXPECT_EQ(state.actionName, names[action]);
    }
}

TEST_F(SettingsPageAction, FlagsWhenNothingIsSelected)
{
    Run([&](HWND page) { TakeSelectionAway(page, IDC_ACTION); });

    EXPECT_EQ(ActionFlags(), (std::vector<LONG>{0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(state.actionName, L"Mark with the flag");
}
}    // namespace
