#include "tests/ui/ModalDriver.h"

#include "ui/MsgDlg.h"

#include <windows.h>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace
{
const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";
constexpr auto soon = std::chrono::milliseconds(100);

TEST(ModalDriver, FailsTheTestAndClosesTheDialogWhenAnotherDoesNotCome)
{
    INT_PTR result = 0;

    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(
        {
            ModalDriver user([](ModalDriver& self) { self.WaitForDialog(L"Another"); }, soon);
            result = CMsgDlg().DoModal();
            user.Join();
        },
        "Another");

    EXPECT_EQ(result, IDCANCEL);
}

TEST(ModalDriver, ClosesQuestionsThatCannotBeCancelled)
{
    int answer = 0;

    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(
        {
            ModalDriver user([](ModalDriver& self) { self.WaitForDialog(L"Another"); }, soon);
            answer = ::MessageBoxW(nullptr, L"Go on?", L"Question", MB_YESNO);
            user.Join();
        },
        "Another");

    EXPECT_EQ(answer, IDNO);
}

TEST(ModalDriver, GivesEachDialogOnce)
{
    HWND seen[2] = {};
    ModalDriver user(
        [&](ModalDriver& self)
        {
            seen[0] = self.WaitForDialog(title);
            seen[1] = self.WaitForDialog(title);
            self.Click(seen[0], IDOK);
            self.Click(seen[1], IDOK);
        });

    std::thread worker([] { CMsgDlg().DoModal(); });
    CMsgDlg().DoModal();
    worker.join();
    user.Join();

    EXPECT_NE(seen[0], seen[1]);
}

TEST(ModalDriver, TellsDialogsOfOneCaptionApartByTheirControls)
{
    ModalDriver user(
        [](ModalDriver& self)
        {
            const HWND question = self.WaitForDialog(title, IDNO);
            self.Click(question, IDNO);
            self.WaitForEnd(question);
            self.Click(self.WaitForDialog(title, IDOK), IDOK);
        });

    std::thread worker([] { CMsgDlg().DoModal(); });
    const int answer = ::MessageBoxW(nullptr, L"Go on?", title.c_str(), MB_YESNO);
    worker.join();

    EXPECT_EQ(answer, IDNO);
}

TEST(ModalDriver, RunsFunctionsOnTheDialogsThread)
{
    DWORD thread = 0;
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND box = self.WaitForDialog(title);
            ModalDriver::RunOnThreadOf(box, [&] { thread = ::GetCurrentThreadId(); });
            self.Click(box, IDOK);
        });

    CMsgDlg().DoModal();
    user.Join();

    EXPECT_EQ(thread, ::GetCurrentThreadId());
}
}    // namespace
