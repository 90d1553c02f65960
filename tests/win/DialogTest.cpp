#include "win/Dialog.h"

#include "tests/win/TestDialog.h"
#include "win/OleException.h"
#include "win/SystemMessage.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace
{
TEST(Dialog, EndsWithTheButtonThatWasPressed)
{
    CTestDialog accepted;
    accepted.whenShown = [](CTestDialog& dialog) { dialog.PostClick(IDOK); };
    CTestDialog refused;
    refused.whenShown = [](CTestDialog& dialog) { dialog.PostClick(IDCANCEL); };

    EXPECT_EQ(accepted.DoModal(), IDOK);
    EXPECT_EQ(refused.DoModal(), IDCANCEL);
}

TEST(Dialog, PutsTheValuesIntoTheControlsAndTakesThemOutWhenAccepted)
{
    std::wstring shown;
    CTestDialog dialog;
    dialog.text = L"before";
    dialog.whenShown = [&](CTestDialog& self)
    {
        shown = self.edit.GetWindowText();
        ::SetDlgItemTextW(self.GetSafeHwnd(), IDC_TEST_EDIT, L"typed");
        self.PostClick(IDOK);
    };

    dialog.DoModal();

    EXPECT_EQ(shown, L"before");
    EXPECT_EQ(dialog.text, L"typed");
}

TEST(Dialog, LeavesTheValuesAloneWhenCancelled)
{
    CTestDialog dialog;
    dialog.text = L"before";
    dialog.whenShown = [](CTestDialog& self)
    {
        ::SetDlgItemTextW(self.GetSafeHwnd(), IDC_TEST_EDIT, L"typed");
        self.PostClick(IDCANCEL);
    };

    dialog.DoModal();

    EXPECT_EQ(dialog.text, L"before");
}

TEST(Dialog, IsCancelledByItsCloseBoxWithoutAHandlerOfItsOwn)
{
    CTestDialog dialog;
    dialog.whenShown = [](CTestDialog& self) { self.Post(WM_CLOSE); };

    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST(Dialog, RunsAgainAfterItHasEnded)
{
    int runs = 0;
    CTestDialog dialog;
    dialog.whenShown = [&](CTestDialog& self)
    {
        ++runs;
        self.edit.SetWindowText(L"again");
        self.PostClick(IDOK);
    };

    dialog.DoModal();
    dialog.DoModal();

    EXPECT_EQ(runs, 2);
    EXPECT_EQ(dialog.text, L"again");
    EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
    EXPECT_EQ(dialog.edit.GetSafeHwnd(), nullptr);
}

void CALLBACK DestroyItsWindow(HWND window, UINT, UINT_PTR, DWORD)
{
    ::DestroyWindow(window);
}

TEST(Dialog, CountsAsCancelledWhenItsWindowIsDestroyed)
{
    CTestDialog dialog;
    dialog.whenShown = [](CTestDialog& self) { ::SetTimer(self.GetSafeHwnd(), 1, 1, &DestroyItsWindow); };

    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST(Dialog, IsOwnedByTheActiveWindowWhenItHasNoParent)
{
    HWND owner = nullptr;
    bool ownerWasUsable = true;
    CTestDialog below;
    below.whenShown = [&](CTestDialog& self)
    {
        ::ShowWindow(self.GetSafeHwnd(), SW_SHOW);
        ::SetActiveWindow(self.GetSafeHwnd());
        CTestDialog above;
        above.whenShown = [&](CTestDialog& inner)
        {
            owner = ::GetWindow(inner.GetSafeHwnd(), GW_OWNER);
            inner.PostClick(IDOK);
            ownerWasUsable = ::IsWindowEnabled(self.GetSafeHwnd());
        };
        above.DoModal();
        EXPECT_EQ(owner, self.GetSafeHwnd());
        EXPECT_TRUE(::IsWindowEnabled(self.GetSafeHwnd()));
        self.PostClick(IDOK);
    };

    below.DoModal();

    EXPECT_FALSE(ownerWasUsable);
}

TEST(Dialog, ThrowsWhenItsTemplateIsMissing)
{
    class CMissingDialog : public CDialog
    {
    public:
        CMissingDialog() : CDialog(9999) {}
    } dialog;

    EXPECT_THROW(dialog.DoModal(), COleException);
}

// The path of the library that a control's code lies in.
std::wstring LibraryOf(HWND control)
{
    HMODULE library = nullptr;
    ::GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const wchar_t*>(::GetClassLongPtrW(control, GCLP_WNDPROC)), &library);
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(library, path, ARRAYSIZE(path));
    return path;
}

TEST(Dialog, HasControlsOfVersionSix)
{
    std::wstring library;
    CTestDialog dialog;
    dialog.whenShown = [&](CTestDialog& self)
    {
        library = LibraryOf(self.GetDlgItem(IDC_TEST_LIST));
        self.PostClick(IDOK);
    };

    dialog.DoModal();

    EXPECT_NE(library.find(L"_6.0."), std::wstring::npos) << "found in the folder of another version";
}

TEST(WindowCall, RunsOnTheWindowsThreadWhileTheOtherWaits)
{
    DWORD runner = 0;
    bool doneWhenItReturned = false;
    std::jthread other;
    CTestDialog dialog;
    dialog.whenShown = [&](CTestDialog& self)
    {
        other = std::jthread(
            [&]
            {
                self.Invoke([&] { runner = ::GetCurrentThreadId(); });
                doneWhenItReturned = runner != 0;
                self.PostClick(IDOK);
            });
    };

    dialog.DoModal();
    other.join();

    EXPECT_EQ(runner, ::GetCurrentThreadId());
    EXPECT_TRUE(doneWhenItReturned);
}

TEST(WindowCall, RunsOnTheCallersThreadWhenTheWindowHasGone)
{
    DWORD runner = 0;
    CTestDialog dialog;
    dialog.whenShown = [](CTestDialog& self) { self.PostClick(IDOK); };
    dialog.DoModal();

    dialog.Invoke([&] { runner = ::GetCurrentThreadId(); });

    EXPECT_EQ(runner, ::GetCurrentThreadId());
}

TEST(WindowCall, CannotBeForgedByAMessage)
{
    CTestDialog dialog;
    dialog.whenShown = [](CTestDialog& self)
    {
        for (UINT message = WM_APP; message < WM_APP + 0x1000; ++message)
            self.SendMessage(message, 0, 1);
        self.PostClick(IDOK);
    };

    EXPECT_EQ(dialog.DoModal(), IDOK);
}

struct MessageBoxSearch
{
    HWND owner;
    HWND found = nullptr;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<MessageBoxSearch*>(parameter);
    if (::GetWindow(window, GW_OWNER) == search.owner && ::GetDlgItem(window, IDOK))
        search.found = window;
    return !search.found;
}

// The message box of this thread whose owner is `owner`; null when there is none (yet).
HWND FindMessageBox(HWND owner)
{
    MessageBoxSearch search{owner};
    ::EnumThreadWindows(::GetCurrentThreadId(), &LookAtWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// Reads the message box and presses its OK.
std::wstring DismissMessageBox(HWND box)
{
    constexpr int textOfAMessageBox = 0xFFFF;
    wchar_t buffer[512] = L"";
    ::GetDlgItemTextW(box, textOfAMessageBox, buffer, ARRAYSIZE(buffer));
    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    return buffer;
}

// A dialog whose button fails; a timer answers the message about it.
class CFailingDialog : public CTestDialog
{
public:
    const MessageMap& GetMessageMap() const override
    {
        static constexpr MessageHandler handlers[] = {
            OnCommand<&CFailingDialog::OnButton>(IDC_TEST_BUTTON),
            OnMessage<&CFailingDialog::OnTimer>(WM_TIMER),
        };
        static const MessageMap map{&CTestDialog::GetMessageMap(), handlers};
        return map;
    }

    std::function<void()> fail;
    std::wstring told;

private:
    void OnButton()
    {
        ::SetTimer(GetSafeHwnd(), 1, 5, nullptr);
        fail();
    }
    LRESULT OnTimer(WPARAM, LPARAM)
    {
        if (const HWND box = FindMessageBox(GetSafeHwnd()))
        {
            told = DismissMessageBox(box);
            ::KillTimer(GetSafeHwnd(), 1);
            PostClick(IDCANCEL);
        }
        return 0;
    }
};

std::wstring WhatTheUserIsTold(std::function<void()> fail)
{
    CFailingDialog dialog;
    dialog.fail = std::move(fail);
    dialog.whenShown = [](CTestDialog& self) { self.PostClick(IDC_TEST_BUTTON); };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    return dialog.told;
}

TEST(DialogFailure, TellsTheObjectsOwnWordsAndKeepsTheDialogOpen)
{
    EXPECT_EQ(
        WhatTheUserIsTold([] { throw COleDispatchException(E_FAIL, 0, L"The folder has gone.", L"Test"); }),
        L"The folder has gone.");
}

TEST(DialogFailure, TellsTheSystemsTextOfAnHresult)
{
    EXPECT_EQ(WhatTheUserIsTold([] { throw COleException(E_OUTOFMEMORY); }),
              SystemMessage(static_cast<DWORD>(E_OUTOFMEMORY)));
}

TEST(DialogFailure, SurvivesAnythingThatIsThrown)
{
    EXPECT_EQ(WhatTheUserIsTold([] { throw 5; }), L"An unexpected error occurred.");
}

HWND unfinishedDialog;
std::wstring toldByTheTimer;

void CALLBACK AnswerMessageBox(HWND, UINT, UINT_PTR, DWORD)
{
    if (const HWND box = FindMessageBox(unfinishedDialog))
        toldByTheTimer = DismissMessageBox(box);
}

TEST(DialogFailure, EndsADialogThatCannotBeInitialised)
{
    CTestDialog dialog;
    dialog.whenShown = [](CTestDialog& self)
    {
        unfinishedDialog = self.GetSafeHwnd();
        ::SetTimer(unfinishedDialog, 1, 5, &AnswerMessageBox);
        throw std::runtime_error("no");
    };

    const INT_PTR result = dialog.DoModal();

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(toldByTheTimer, L"An unexpected error occurred.");
}
}    // namespace
