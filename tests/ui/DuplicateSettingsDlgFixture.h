#pragma once

#include "engine/ScanSettings.h"
#include "res/resource.h"
#include "tests/engine/ScanFixture.h"
#include "tests/ui/ModalDriver.h"
#include "ui/DuplicateSettingsDlg.h"

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// The page of a run's settings over a fake store, whose folders are all ticked, and its user.
class SettingsPage : public ScanFixture
{
protected:
    using UserOfPage = std::function<void(ModalDriver& user, HWND page)>;

    const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";
    LONG closeOwner = 0;

    SettingsPage()
    {
        inbox = &store.root.AddFolder(L"Inbox");
        for (int i = 0; i < 3; ++i)
            inbox->AddMessage();
        archive = &store.root.AddFolder(L"Archive");
        state.folderTree = &tree;
    }
    void SetUp() override { LoadTree(); }

    // As the main page does before each of several runs.
    void LoadAgain()
    {
        state.folders.clear();
        tree.items.clear();
        LoadTree();
        ResetSettings(state);
    }

    // Shows the page while `script` uses it; returns what it ended with.
    INT_PTR Use(const UserOfPage& script)
    {
        ModalDriver user([&](ModalDriver& self) { script(self, WaitForPage(self)); });
        CDuplicateSettingsDlg dialog(state, closeOwner);
        const INT_PTR result = dialog.DoModal();
        user.Join();
        return result;
    }
    // Looks at it, then cancels it.
    void Look(const std::function<void(HWND page)>& look)
    {
        Use(
            [&](ModalDriver& user, HWND page)
            {
                look(page);
                user.Click(page, IDCANCEL);
            });
    }
    // Makes the choices, then runs to the end and closes the page of results, and so this one.
    void Run(const std::function<void(HWND page)>& choose = [](HWND) {})
    {
        Use(
            [&](ModalDriver& user, HWND page)
            {
                choose(page);
                user.PostClick(page, IDOK);
                CloseResults(user, WaitForResults(user));
            });
    }

    HWND WaitForPage(ModalDriver& user) const { return user.WaitForDialog(title, IDC_TIME_SPAN); }
    HWND WaitForPicker(ModalDriver& user) const { return user.WaitForDialog(title, IDC_DESTINATION_TREE); }
    HWND WaitForMessage(ModalDriver& user) const { return user.WaitForDialog(title, IDC_MESSAGE_TEXT); }
    // The page of results, once its run has ended and the message about that is dismissed.
    HWND WaitForResults(ModalDriver& user) const
    {
        const HWND results = user.WaitForDialog(title, IDC_SAVE_LOG);
        user.Click(WaitForMessage(user), IDOK);
        user.WaitUntil([&] { return IsEnabled(results, IDC_SAVE_LOG); }, "the end of the run");
        return results;
    }
    static void CloseResults(ModalDriver& user, HWND results)
    {
        // Answered when the page has done all that belongs to the end.
        ::SendMessageW(results, WM_NULL, 0, 0);
        user.PostClick(results, IDCANCEL);
        user.WaitForEnd(results);
    }

    // As a person does in the list.
    static void ChooseEntry(HWND page, int comboBox, int entry)
    {
        const HWND control = ::GetDlgItem(page, comboBox);
        ::SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
        ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(comboBox, CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(control));
    }
    static void ChooseSpan(HWND page, int entry) { ChooseEntry(page, IDC_TIME_SPAN, entry); }
    static void ChooseAction(HWND page, int entry) { ChooseEntry(page, IDC_ACTION, entry); }

    static bool IsEnabled(HWND dialog, int control)
    {
        return ::IsWindowEnabled(::GetDlgItem(dialog, control)) != FALSE;
    }
    static bool IsChecked(HWND page, int checkBox)
    {
        return ::SendMessageW(::GetDlgItem(page, checkBox), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
    static LONG_PTR StyleOf(HWND page, int control)
    {
        return ::GetWindowLongPtrW(::GetDlgItem(page, control), GWL_STYLE);
    }
    static std::wstring TextIn(HWND dialog, int control) { return TextOf(::GetDlgItem(dialog, control)); }
    static void TakeSelectionAway(HWND page, int comboBox) { ChooseEntry(page, comboBox, -1); }

    std::vector<LONG> ActionFlags() const
    {
        return {state.actionDelete, state.actionExpire, state.actionCopy,
                state.actionMove,   state.actionFlag,   state.actionDeletePermanently};
    }

    FakeFolder* inbox = nullptr;
    FakeFolder* archive = nullptr;
};
