#include "tests/ui/JobDialog.h"

#include "res/resource.h"
#include "tests/engine/FakeStore.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/StoreFileFixture.h"
#include "tests/win/HandleCounts.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace
{
constexpr wchar_t productTitle[] = L"Talmore Quorvex Outlook Duplicate Remover";

using Job = CJobDialog::Job;

void WaitUntilDone(ModalDriver& user, HWND dialog)
{
    user.WaitUntil([&] { return ::IsWindowEnabled(::GetDlgItem(dialog, IDC_JOB_DONE)); }, "the job's end");
}

// Runs the dialog while `user` uses it.
void Use(CJobDialog& dialog, const ModalDriver::Script& script)
{
    ModalDriver user(script);
    dialog.DoModal();
    user.Join();
}

// Lets the job run to its end; of a scan, dismisses and returns what is told then.
std::wstring RunToTheEnd(CJobDialog& dialog, Job job)
{
    std::wstring told;
    Use(dialog,
        [&](ModalDriver& user)
        {
            const HWND window = user.WaitForDialog(L"Job");
            if (job == Job::scan)
            {
                const HWND box = user.WaitForDialog(productTitle, IDC_MESSAGE_TEXT);
                told = TextOf(::GetDlgItem(box, IDC_MESSAGE_TEXT));
                user.Click(box, IDOK);
            }
            WaitUntilDone(user, window);
            user.Click(window, IDC_JOB_DONE);
        });
    return told;
}

// A place in a job where the worker waits until the test lets it go on.
class Halt
{
public:
    void Reach()
    {
        reached = true;
        ::WaitForSingleObject(passed.get(), 20000);
    }
    void WaitUntilReached(ModalDriver& user)
    {
        user.WaitUntil([this] { return reached.load(); }, "the job to come to the halt");
    }
    void LetPass() { ::SetEvent(passed.get()); }

private:
    std::atomic<bool> reached{false};
    KernelHandle passed{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

class FakeStoreJobs : public testing::Test
{
protected:
    FakeStore store;
    ScanState state;

    FakeStoreJobs() { state.storeSession = store.MakeSession(); }

    FakeFolder& AddFolderWithDuplicates(const std::wstring& name, int count)
    {
        FakeFolder& folder = store.root.AddFolder(name);
        for (int i = 0; i <= count; ++i)
            folder.AddMessage({.subject = name});
        return folder;
    }
    void Choose(LONG ScanState::*action, const wchar_t* name)
    {
        state.*action = 1;
        state.actionName = name;
    }
};

TEST_F(FakeStoreJobs, LoadTheTreeIntoTheControl)
{
    store.root.AddFolder(L"Inbox").AddFolder(L"Lists");
    store.root.AddFolder(L"Calendar", 1);
    std::vector<std::wstring> texts;
    bool expanded = false;
    CJobDialog dialog(state, Job::loadTree);

    Use(dialog,
        [&](ModalDriver& user)
        {
            const HWND window = user.WaitForDialog(L"Job");
            WaitUntilDone(user, window);
            const HTREEITEM root = dialog.tree.GetRootItem();
            expanded = dialog.tree.GetItemState(root, TVIS_EXPANDED) != 0;
            texts.push_back(dialog.tree.GetItemText(root));
            for (HTREEITEM item = dialog.tree.GetChildItem(root); item;
                 item = dialog.tree.GetNextSiblingItem(item))
                texts.push_back(dialog.tree.GetItemText(item));
            user.Click(window, IDC_JOB_DONE);
        });

    EXPECT_EQ(texts, (std::vector<std::wstring>{L"Mailbox", L"Inbox", L"Calendar"}));
    EXPECT_TRUE(expanded);
    EXPECT_EQ(state.folders.size(), 4u);
}

TEST_F(FakeStoreJobs, SendTheCloseMessageToADialogWithoutAStore)
{
    store.hasRootFolder = false;
    CJobDialog dialog(state, Job::loadTree);

    RunToTheEnd(dialog, Job::loadTree);

    EXPECT_EQ(dialog.closeRequests, 1);
    EXPECT_EQ(state.workerThread, nullptr);
}

TEST_F(FakeStoreJobs, StopLoadingWhenTheUserSaysSo)
{
    for (int i = 0; i < 50; ++i)
        store.root.AddFolder(L"Folder " + std::to_wstring(i));
    CJobDialog dialog(state, Job::loadTree);
    Halt halt;
    int inserted = 0;
    dialog.whenInserting = [&]
    {
        if (++inserted == 5)
            halt.Reach();
    };

    Use(dialog,
        [&](ModalDriver& user)
        {
            const HWND window = user.WaitForDialog(L"Job");
            halt.WaitUntilReached(user);
            user.Click(window, IDC_JOB_STOP);
            halt.LetPass();
            WaitUntilDone(user, window);
            user.Click(window, IDC_JOB_DONE);
        });

    EXPECT_EQ(state.folders.size(), 5u);
    EXPECT_EQ(state.stopRequested, 0);
}

TEST_F(FakeStoreJobs, TellTheTotalAndTheActionWhenACompletedScanEnds)
{
    AddFolderWithDuplicates(L"Inbox", 3);
    Choose(&ScanState::actionDelete, L"Delete (move to Deleted Items folder)");
    CJobDialog dialog(state, Job::scan);

    const std::wstring told = RunToTheEnd(dialog, Job::scan);

    EXPECT_EQ(told, L"Total duplicates items: 3\n\nSelected Action: Delete (move to Deleted Items "
                    L"folder)\n\nProcess completed.");
    EXPECT_EQ(store.deletedItems.messages.size(), 3u);
    EXPECT_TRUE(state.folders.empty());
}

TEST_F(FakeStoreJobs, TellZeroWhenAScanFindsNothing)
{
    AddFolderWithDuplicates(L"Inbox", 0);
    Choose(&ScanState::actionFlag, L"Mark with the flag");
    CJobDialog dialog(state, Job::scan);

    const std::wstring told = RunToTheEnd(dialog, Job::scan);

    EXPECT_EQ(told,
              L"Total duplicates items: 0\n\nSelected Action: Mark with the flag\n\nProcess completed.");
}

TEST_F(FakeStoreJobs, TellThatAScanWasStoppedAndLeaveEveryItemUnchanged)
{
    const FakeFolder& first = AddFolderWithDuplicates(L"First", 2);
    AddFolderWithDuplicates(L"Second", 4);
    Choose(&ScanState::actionDeletePermanently, L"Delete permanently");
    CJobDialog dialog(state, Job::scan);
    Halt halt;
    dialog.whenFound = [&] { halt.Reach(); };
    std::wstring told;

    Use(dialog,
        [&](ModalDriver& user)
        {
            const HWND window = user.WaitForDialog(L"Job");
            halt.WaitUntilReached(user);
            user.Click(window, IDC_JOB_STOP);
            halt.LetPass();
            const HWND box = user.WaitForDialog(productTitle, IDC_MESSAGE_TEXT);
            told = TextOf(::GetDlgItem(box, IDC_MESSAGE_TEXT));
            user.Click(box, IDOK);
            WaitUntilDone(user, window);
            user.Click(window, IDC_JOB_DONE);
        });

    EXPECT_EQ(told, L"Process aborted by user.\n\nTotal duplicates items: 2");
    EXPECT_EQ(first.messages.size(), 3u);
    EXPECT_TRUE(state.folders.empty());
}

TEST_F(FakeStoreJobs, ShowTheEndOnTheWorkersThreadInFrontOfTheDialogThatStillAnswers)
{
    AddFolderWithDuplicates(L"Inbox", 1);
    CJobDialog dialog(state, Job::scan);
    DWORD boxThread = 0;
    HWND owner = nullptr;
    HWND shown = nullptr;
    bool usable = true;
    bool answered = false;
    bool counted = false;

    Use(dialog,
        [&](ModalDriver& user)
        {
            const HWND window = shown = user.WaitForDialog(L"Job");
            const HWND box = user.WaitForDialog(productTitle, IDC_MESSAGE_TEXT);
            boxThread = ::GetWindowThreadProcessId(box, nullptr);
            owner = ::GetWindow(box, GW_OWNER);
            usable = ::IsWindowEnabled(window);
            DWORD_PTR ignored = 0;
            answered = ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &ignored) != 0;
            counted = state.workerThread != nullptr;
            user.Click(box, IDOK);
            WaitUntilDone(user, window);
            user.Click(window, IDC_JOB_DONE);
        });

    EXPECT_NE(boxThread, ::GetCurrentThreadId());
    EXPECT_EQ(owner, shown);
    EXPECT_FALSE(usable);
    EXPECT_TRUE(answered);
    EXPECT_TRUE(counted);
}

TEST_F(FakeStoreJobs, LeaveNothingBehindAfterTwoHundredRounds)
{
    AddFolderWithDuplicates(L"Inbox", 1);
    const auto round = [this]
    {
        {
            CJobDialog loading(state, Job::loadTree);
            RunToTheEnd(loading, Job::loadTree);
            state.folders.clear();
        }
        CJobDialog scanning(state, Job::scan);
        RunToTheEnd(scanning, Job::scan);
        state.folderRoot.ReleaseDispatch();
    };
    round();
    const HandleCounts handlesBefore = HandleCounts::Now();
    const int objectsBefore = store.log.liveObjects;

    for (int i = 0; i < 200; ++i)
        round();

    EXPECT_LE(HandleCounts::Now(), handlesBefore.WithSlackFor(200));
    EXPECT_EQ(store.log.liveObjects, objectsBefore);
}

using StoreFileJobs = StoreFileFixture;

TEST_F(StoreFileJobs, LoadEveryFolderOfTheStore)
{
    LogOn();
    CJobDialog dialog(*state, Job::loadTree);

    RunToTheEnd(dialog, Job::loadTree);

    EXPECT_EQ(static_cast<std::int64_t>(state->folders.size()),
              file.ReadInteger("SELECT count(*) FROM folder WHERE parent_id IS NOT NULL"));
}

TEST_F(StoreFileJobs, MoveTheDuplicatesOfTheInboxToDeletedItems)
{
    for (const char* subject : {"Minutes", "Minutes", "Agenda", "Minutes"})
        file.AddMessage(inbox, subject);
    LogOn();
    state->actionDelete = 1;
    state->actionName = L"Delete (move to Deleted Items folder)";
    CJobDialog dialog(*state, Job::scan);

    const std::wstring told = RunToTheEnd(dialog, Job::scan);

    EXPECT_NE(told.find(L"Total duplicates items: 2\n"), std::wstring::npos) << "told something else";
    EXPECT_EQ(CountMessages(inbox), 2);
}
}    // namespace
