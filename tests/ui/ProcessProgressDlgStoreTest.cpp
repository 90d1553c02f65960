// The page over a store file, through the automation server and the system's MAPI.
#include "engine/FolderTree.h"
#include "res/resource.h"
#include "tests/engine/Watchers.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/StoreFileFixture.h"
#include "ui/ProcessProgressDlg.h"
#include "win/ListCtrl.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;

namespace
{
class ProgressPageOverAStoreFile : public StoreFileFixture
{
protected:
    const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";
    RecordingTreeView tree;

    void OpenStore()
    {
        LogOn();
        ASSERT_EQ(OpenDefaultStore(*state), 1);
        EnumerateFolder(*state, tree, state->folderRoot, TreeItem::none);
        state->folderTree = &tree;
    }
};

TEST_F(ProgressPageOverAStoreFile, ListsTheDuplicatesAndTreatsThem)
{
    for (const char* subject : {"Minutes", "Agenda", "Minutes", "Minutes"})
        file.AddMessage(inbox, subject);
    file.AddMessage(sentItems, "Minutes");
    OpenStore();
    state->actionDeletePermanently = 1;
    state->actionName = L"Delete permanently";
    std::vector<std::wstring> cells;
    std::wstring told;
    CProcessProgressDlg dialog(*state);
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND page = self.WaitForDialog(title, IDC_SAVE_LOG);
            const HWND message = self.WaitForDialog(title, IDC_MESSAGE_TEXT);
            told = TextOf(::GetDlgItem(message, IDC_MESSAGE_TEXT));
            CListCtrl list;
            list.Attach(::GetDlgItem(page, IDC_REPORT));
            for (int row = 0; row < list.GetItemCount(); ++row)
                for (int column = 0; column < 3; ++column)
                    cells.push_back(list.GetItemText(row, column));
            self.Click(message, IDOK);
            self.WaitUntil([&] { return state->workerThread == nullptr; }, "the end of the run");
            self.PostClick(page, IDCANCEL);
        });

    const INT_PTR result = dialog.DoModal();
    user.Join();

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_THAT(cells, ElementsAre(L"Inbox", L"Minutes", L"2", L"Sent Items", L"Minutes", L"1"));
    EXPECT_EQ(told,
              L"Total duplicates items: 3\n\nSelected Action: Delete permanently\n\nProcess completed.");
    EXPECT_EQ(CountMessages(inbox), 2);
    EXPECT_EQ(CountMessages(sentItems), 0);
}
}    // namespace
