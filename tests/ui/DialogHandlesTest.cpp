#include "res/resource.h"
#include "tests/ui/InstalledFolder.h"
#include "tests/ui/ModalDriver.h"
#include "tests/win/HandleCounts.h"
#include "ui/AboutDlg.h"
#include "ui/MsgDlg.h"
#include "ui/MyEULADlg.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>

namespace
{
// Runs one round for what the system makes once and keeps, then the rounds that must leave nothing.
void ExpectNothingLeftBy(const std::function<void()>& round)
{
    constexpr int rounds = 200;
    round();
    const HandleCounts before = HandleCounts::Now();

    for (int i = 0; i < rounds; ++i)
        round();

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(rounds));
}

void Accept(ModalDriver& user, const wchar_t* caption)
{
    const HWND dialog = user.WaitForDialog(caption);
    // Every round draws all controls at once: the system keeps as many device contexts as were ever in use.
    ModalDriver::RunOnThreadOf(
        dialog,
        [&] { ::RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN); });
    user.Click(dialog, IDOK);
}

TEST(DialogHandles, AreAllGivenBackByTheMessageBox)
{
    ExpectNothingLeftBy(
        []
        {
            ModalDriver user([](ModalDriver& self)
                             { Accept(self, L"Talmore Quorvex Outlook Duplicate Remover"); });
            CMsgDlg dialog;
            dialog.message = L"Text";
            dialog.DoModal();
            user.Join();
        });
}

TEST(DialogHandles, AreAllGivenBackByTheAboutDialog)
{
    ExpectNothingLeftBy(
        []
        {
            ModalDriver user([](ModalDriver& self) { Accept(self, L"About"); });
            CAboutDlg().DoModal();
            user.Join();
        });
}

TEST(DialogHandles, AreAllGivenBackByTheLicenceViewer)
{
    const TemporaryFolder folder;
    const InstallEntry entry;
    folder.Write(L"eula.dat", "one\ntwo\nthree\n");
    entry.Set(folder.Path());

    ExpectNothingLeftBy(
        []
        {
            ModalDriver user([](ModalDriver& self) { Accept(self, L"End User License Agreement"); });
            CMyEULADlg().DoModal();
            user.Join();
        });
}
}    // namespace
