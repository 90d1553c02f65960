#include "tests/ui/ProcessProgressDlgFixture.h"

#include "tests/ui/ScratchFolder.h"
#include "tests/win/DialogUser.h"

#include <windows.h>

#include <objbase.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::EndsWith;
using testing::StartsWith;

namespace
{
// "Save Log" on a page that lists three rows, with the system's own dialogs.
class SaveLogButton : public ProgressPage
{
protected:
    ScratchFolder folder;
    CProcessProgressDlg dialog{state, nullptr, [](ScanState&, ScanProgressView&) { return true; }};

    SaveLogButton() { ::CoInitialize(nullptr); }
    ~SaveLogButton() override { ::CoUninitialize(); }

    // Presses the button, lets `script` use the dialogs that follow, and closes the page.
    void Press(const UserOfPage& script)
    {
        Use(dialog,
            [&](ModalDriver& user, HWND page)
            {
                dialog.AddResultRow(L"Inbox", L"Meeting", 2, 2);
                dialog.AddResultRow(L"Sent Items", L"Meeting", 1, 3);
                dialog.AddResultRow(L"Inbox", L"Report", 3, 6);
                ::EnableWindow(::GetDlgItem(page, IDC_SAVE_LOG), TRUE);
                user.PostClick(page, IDC_SAVE_LOG);
                script(user, page);
                user.PostClick(page, IDCANCEL);
            });
    }
    static HWND WaitForFileDialog(ModalDriver& user) { return user.WaitForDialog(L"Save As"); }

    // Types a name into the file dialog and presses its button.
    void Choose(HWND fileDialog, const std::wstring& name) const
    {
        DialogUser::Type(fileDialog, folder.PathOf(name));
        DialogUser::Press(fileDialog, IDOK);
    }
    // The file dialog's own question whether the file is to be overwritten is answered with Yes.
    static void ConfirmOverwriting(ModalDriver& user, HWND fileDialog)
    {
        HWND box = nullptr;
        const auto search = [&]
        {
            for (const HWND shown : ShownDialogs())
                if (::GetWindow(shown, GW_OWNER) == fileDialog && ::GetDlgItem(shown, IDYES))
                    box = shown;
            return box != nullptr;
        };
        user.WaitUntil(search, "the file dialog's question");
        user.Click(box, IDYES);
    }
    // A message box without a caption, in front of the page; what it says.
    static std::wstring Answer(ModalDriver& user, HWND page, int button)
    {
        const HWND box = user.WaitForDialog(L"");
        EXPECT_EQ(::GetWindow(box, GW_OWNER), page);
        std::wstring text = TextOf(::GetDlgItem(box, 0xFFFF));
        if (button == IDOK)
            user.PressKey(box, VK_RETURN);
        else
            user.Click(box, button);
        user.WaitForEnd(box);
        return text;
    }
    std::wstring SavedAt(const std::wstring& name) const
    {
        return L"Log Information saved at: " + folder.PathOf(name) + L".";
    }
};

const char report[] = "Talmore Quorvex Outlook Duplicate Remover\r\n"
                      "\r\n"
                      "Item Number: 1\r\n"
                      "Subject: Meeting\r\n"
                      "Folder Name: Inbox    Duplicate Count: 2\r\n"
                      "Folder Name: Sent Items    Duplicate Count: 1\r\n"
                      "\r\n"
                      "Item Number: 2\r\n"
                      "Subject: Report\r\n"
                      "Folder Name: Inbox    Duplicate Count: 3\r\n";

TEST_F(SaveLogButton, WritesTheListIntoAFile)
{
    Press(
        [&](ModalDriver& user, HWND page)
        {
            Choose(WaitForFileDialog(user), L"report");
            EXPECT_EQ(Answer(user, page, IDOK), SavedAt(L"report.txt"));
        });

    EXPECT_EQ(folder.Read(L"report.txt"), report);
}

TEST_F(SaveLogButton, AsksForATextFileWithoutProposingOne)
{
    Press(
        [&](ModalDriver& user, HWND)
        {
            const HWND fileDialog = WaitForFileDialog(user);
            EXPECT_EQ(DialogUser::TextOf(DialogUser::Find(fileDialog, L"Edit")), L"");
            EXPECT_EQ(::GetWindow(fileDialog, GW_OWNER), nullptr);
            DialogUser::Press(fileDialog, IDCANCEL);
            user.WaitForEnd(fileDialog);
        });
}

TEST_F(SaveLogButton, DoesNothingWhenTheFileDialogIsCancelled)
{
    Press(
        [&](ModalDriver& user, HWND page)
        {
            const HWND fileDialog = WaitForFileDialog(user);
            DialogUser::Press(fileDialog, IDCANCEL);
            user.WaitForEnd(fileDialog);
            ::SendMessageW(page, WM_NULL, 0, 0);
            EXPECT_THAT(ShownDialogs(), testing::ElementsAre(page));
        });
}

TEST_F(SaveLogButton, AsksTwiceBeforeItReplacesAFile)
{
    folder.Write(L"report.txt", "old");

    Press(
        [&](ModalDriver& user, HWND page)
        {
            const HWND fileDialog = WaitForFileDialog(user);
            Choose(fileDialog, L"report.txt");
            ConfirmOverwriting(user, fileDialog);
            EXPECT_EQ(Answer(user, page, IDOK),
                      L"File report.txt already exists. Do you want to replace existing file?");
            EXPECT_EQ(Answer(user, page, IDOK), SavedAt(L"report.txt"));
        });

    EXPECT_EQ(folder.Read(L"report.txt"), report);
}

TEST_F(SaveLogButton, LeavesTheOldFileEmptyWhenItIsNotToBeReplaced)
{
    folder.Write(L"old.txt", "old");

    Press(
        [&](ModalDriver& user, HWND page)
        {
            const HWND fileDialog = WaitForFileDialog(user);
            Choose(fileDialog, L"old.txt");
            ConfirmOverwriting(user, fileDialog);
            EXPECT_THAT(testing::PrintToString(Answer(user, page, IDCANCEL)), StartsWith("L\"File old.txt"));
            EXPECT_EQ(Answer(user, page, IDOK), L"Choose another file name.");
            Choose(WaitForFileDialog(user), L"new.txt");
            EXPECT_EQ(Answer(user, page, IDOK), SavedAt(L"new.txt"));
        });

    EXPECT_TRUE(folder.Has(L"old.txt"));
    EXPECT_EQ(folder.Read(L"old.txt"), "");
    EXPECT_EQ(folder.Read(L"new.txt"), report);
}

TEST_F(SaveLogButton, AsksForAnotherNameWhenTheFileCannotBeCreated)
{
    // The file dialog takes the name: only with the ending it is that of a folder.
    std::filesystem::create_directory(folder.PathOf(L"report.txt"));

    Press(
        [&](ModalDriver& user, HWND page)
        {
            Choose(WaitForFileDialog(user), L"report");
            EXPECT_EQ(Answer(user, page, IDOK), L"Error creating file. Choose another file name.");
            Choose(WaitForFileDialog(user), L"other");
            EXPECT_EQ(Answer(user, page, IDOK), SavedAt(L"other.txt"));
        });

    EXPECT_EQ(folder.Read(L"other.txt"), report);
}

TEST_F(SaveLogButton, MayBePressedAgain)
{
    Press(
        [&](ModalDriver& user, HWND page)
        {
            Choose(WaitForFileDialog(user), L"first");
            Answer(user, page, IDOK);
            user.PostClick(page, IDC_SAVE_LOG);
            Choose(WaitForFileDialog(user), L"second");
            Answer(user, page, IDOK);
        });

    EXPECT_EQ(folder.Read(L"first.txt"), report);
    EXPECT_EQ(folder.Read(L"second.txt"), report);
}

TEST_F(SaveLogButton, SavesTheListOfARun)
{
    AddFolder(L"Inbox", L"Minutes", 2);

    Use(
        [&](ModalDriver& user, HWND page)
        {
            WaitForTheEnd(user, page);
            user.PostClick(page, IDC_SAVE_LOG);
            Choose(WaitForFileDialog(user), L"run");
            Answer(user, page, IDOK);
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_THAT(folder.Read(L"run.txt"), EndsWith("Folder Name: Inbox    Duplicate Count: 2\r\n"));
}
}    // namespace
