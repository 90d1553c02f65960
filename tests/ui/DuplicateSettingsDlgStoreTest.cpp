// Settings, picker and run over a store file, through the automation server and the system's MAPI.
#include "engine/FolderTree.h"
#include "res/resource.h"
#include "tests/engine/Watchers.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/StoreFileFixture.h"
#include "ui/DuplicateSettingsDlg.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{
class SettingsPageOverAStoreFile : public StoreFileFixture
{
protected:
    const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";
    RecordingTreeView tree;
    LONG closeOwner = 0;

    void OpenStore()
    {
        LogOn();
        ASSERT_EQ(OpenDefaultStore(*state), 1);
        EnumerateFolder(*state, tree, state->folderRoot, TreeItem::none);
        state->folderTree = &tree;
    }
    FOLDER_INFO& FolderNamed(const std::wstring& name)
    {
        return *std::ranges::find(state->folders, name, &FOLDER_INFO::name);
    }
    void Untick(const std::wstring& name)
    {
        tree.At(FolderNamed(name).checkItem).check = CheckState::unchecked;
    }

    // Chooses to move the duplicates, picks the folder of that name, and runs to the end.
    void MoveDuplicatesTo(const std::wstring& name)
    {
        constexpr WPARAM moveToFolder = 3;
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND page = self.WaitForDialog(title, IDC_TIME_SPAN);
                const HWND action = ::GetDlgItem(page, IDC_ACTION);
                ::SendMessageW(action, CB_SETCURSEL, moveToFolder, 0);
                ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(IDC_ACTION, CBN_SELCHANGE),
                               reinterpret_cast<LPARAM>(action));
                self.PostClick(page, IDC_SELECT_DESTINATION);
                const HWND picker = self.WaitForDialog(title, IDC_DESTINATION_TREE);
                ::SendMessageW(::GetDlgItem(picker, IDC_DESTINATION_TREE), TVM_SELECTITEM, TVGN_CARET,
                               static_cast<LPARAM>(FolderNamed(name).treeItem));
                self.Click(picker, IDOK);
                self.WaitForEnd(picker);
                self.PostClick(page, IDOK);
                const HWND results = self.WaitForDialog(title, IDC_SAVE_LOG);
                self.Click(self.WaitForDialog(title, IDC_MESSAGE_TEXT), IDOK);
                self.WaitUntil([&] { return state->workerThread == nullptr; }, "the end of the run");
                self.PostClick(results, IDCANCEL);
            });
        CDuplicateSettingsDlg(*state, closeOwner).DoModal();
        user.Join();
    }
};

TEST_F(SettingsPageOverAStoreFile, MovesTheDuplicatesOfTheTickedFoldersToThePickedOne)
{
    for (const char* subject : {"Minutes", "Agenda", "Minutes", "Minutes"})
        file.AddMessage(inbox, subject);
    for (const char* subject : {"Minutes", "Minutes"})
        file.AddMessage(sentItems, subject);
    ASSERT_NO_FATAL_FAILURE(OpenStore());
    Untick(L"Sent Items");

    MoveDuplicatesTo(L"Deleted Items");

    EXPECT_EQ(CountMessages(inbox), 2);
    EXPECT_EQ(CountMessages(sentItems), 2);
    EXPECT_EQ(CountMessages(deletedItems), 2);
    EXPECT_EQ(closeOwner, 1);
}
}    // namespace
