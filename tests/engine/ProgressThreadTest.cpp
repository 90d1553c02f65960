#include "engine/ProgressThread.h"

#include "tests/engine/ScanFixture.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

namespace
{
constexpr DWORD deadline = 20000;    // milliseconds

// What a job told its watchers, in order, and the thread that it ran on.
struct JobRecord
{
    std::vector<std::string> events;
    KernelHandle thread;
    KernelHandle finished{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};

    void Finish()
    {
        thread.reset(
            ::OpenThread(SYNCHRONIZE | THREAD_QUERY_LIMITED_INFORMATION, FALSE, ::GetCurrentThreadId()));
        ::SetEvent(finished.get());
    }
    // The exit code of the job's thread, once that has ended.
    DWORD WaitForTheEnd() const
    {
        EXPECT_EQ(::WaitForSingleObject(finished.get(), deadline), WAIT_OBJECT_0);
        EXPECT_EQ(::WaitForSingleObject(thread.get(), deadline), WAIT_OBJECT_0);
        DWORD exitCode = 0;
        ::GetExitCodeThread(thread.get(), &exitCode);
        return exitCode;
    }
};

class JobTreeView : public RecordingTreeView
{
public:
    explicit JobTreeView(JobRecord& record) : record(record) {}

    std::function<void()> whenInserting = [] {};
    std::function<void()> whenFinishing = [] {};

    TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                        int selectedImage) override
    {
        whenInserting();
        return RecordingTreeView::InsertItem(parent, place, text, image, selectedImage);
    }
    void ExpandBranch(TreeItem item) override { Note("expand", item); }
    void EnsureVisible(TreeItem item) override { Note("make visible", item); }
    void Close() override { record.events.push_back("close"); }
    void FinishLoading(const std::function<void()>& endJob) override
    {
        record.events.push_back("finish loading");
        whenFinishing();
        endJob();
        record.Finish();
    }

private:
    void Note(const char* what, TreeItem item)
    {
        record.events.push_back(what + (" " + std::to_string(static_cast<std::uintptr_t>(item))));
    }

    JobRecord& record;
};

class JobProgressView : public RecordingProgressView
{
public:
    explicit JobProgressView(JobRecord& record) : record(record) {}

    std::function<void()> whenFound = [] {};
    std::function<void()> whenShowingTheEnd = [] {};
    std::function<void()> whenFinishing = [] {};
    bool stopped = false;
    LONG total = -1;
    std::wstring action;

    void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                      LONG runningTotal) override
    {
        RecordingProgressView::AddResultRow(folderName, subject, count, runningTotal);
        whenFound();
    }
    void ShowEnd(bool wasStopped, LONG duplicateCount, const std::wstring& actionName) override
    {
        record.events.push_back("show end");
        stopped = wasStopped;
        total = duplicateCount;
        action = actionName;
        whenShowingTheEnd();
    }
    void FinishRun(const std::function<void()>& endJob) override
    {
        record.events.push_back("finish run");
        whenFinishing();
        endJob();
        record.Finish();
    }

private:
    JobRecord& record;
};

class Job : public ScanFixture
{
protected:
    JobRecord record;
    JobTreeView jobTree{record};
    JobProgressView jobProgress{record};

    Job() { state.folderTree = &jobTree; }

    // `folders` as the loaded tree has them; returns the exit code of the thread.
    DWORD Load()
    {
        state.storeSession = store.MakeSession();
        EXPECT_TRUE(StartTreeLoading(state));
        return record.WaitForTheEnd();
    }
    DWORD Scan()
    {
        Load();
        record.events.clear();
        ::ResetEvent(record.finished.get());
        EXPECT_TRUE(StartScan(state, jobProgress));
        return record.WaitForTheEnd();
    }
    void ChooseToFlag()
    {
        state.actionFlag = 1;
        state.actionName = L"Mark with the flag";
    }
    bool NoJobIsLeft() const
    {
        return state.workerThread == nullptr && state.stopRequested == 0 && state.loadingTree == 0;
    }
};

using TreeLoading = Job;

TEST_F(TreeLoading, DrawsEveryFolderThenOpensTheWholeTreeThenFinishes)
{
    store.root.AddFolder(L"Inbox").AddFolder(L"Lists");

    Load();

    EXPECT_EQ(jobTree.items.size(), 3u);
    EXPECT_EQ(record.events, (std::vector<std::string>{"expand 1", "make visible 1", "finish loading"}));
}

TEST_F(TreeLoading, RunsOnAThreadOfItsOwnThatEndsWithCodeEighteen)
{
    DWORD jobThread = 0;
    jobTree.whenInserting = [&] { jobThread = ::GetCurrentThreadId(); };

    const DWORD exitCode = Load();

    EXPECT_EQ(exitCode, 18u);
    EXPECT_NE(jobThread, 0u);
    EXPECT_NE(jobThread, ::GetCurrentThreadId());
}

TEST_F(TreeLoading, CountsAsRunningUntilTheTreeIsShownAsComplete)
{
    bool ranWhileInserting = false;
    bool ranWhileFinishing = false;
    jobTree.whenInserting = [&]
    { ranWhileInserting = state.workerThread != nullptr && state.loadingTree == 1; };
    jobTree.whenFinishing = [&]
    { ranWhileFinishing = state.workerThread != nullptr && state.loadingTree == 1; };

    Load();

    EXPECT_TRUE(ranWhileInserting);
    EXPECT_TRUE(ranWhileFinishing);
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(TreeLoading, AsksToCloseWhenThereIsNoRootFolderAndFinishesAllTheSame)
{
    store.hasRootFolder = false;

    Load();

    EXPECT_EQ(record.events, (std::vector<std::string>{"close", "finish loading"}));
    EXPECT_TRUE(state.folders.empty());
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(TreeLoading, AsksToCloseWithoutASession)
{
    ASSERT_TRUE(StartTreeLoading(state));

    record.WaitForTheEnd();

    EXPECT_EQ(record.events, (std::vector<std::string>{"close", "finish loading"}));
}

TEST_F(TreeLoading, LeavesTreeAndListAgreeingWhenStopped)
{
    for (int i = 0; i < 20; ++i)
        store.root.AddFolder(L"Folder " + std::to_wstring(i)).AddFolder(L"Below");
    jobTree.whenInserting = [this]
    {
        if (jobTree.items.size() == 7)
            state.stopRequested = 1;
    };

    Load();

    ASSERT_EQ(state.folders.size(), jobTree.items.size());
    EXPECT_LT(state.folders.size(), 41u);
    for (std::size_t i = 0; i < state.folders.size(); ++i)
        EXPECT_EQ(state.folders[i].treeItem, static_cast<TreeItem>(i + 1));
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(TreeLoading, FinishesEvenWhenMemoryRunsOut)
{
    jobTree.whenInserting = [] { throw std::bad_alloc(); };

    const DWORD exitCode = Load();

    EXPECT_EQ(exitCode, 18u);
    EXPECT_EQ(record.events, std::vector<std::string>{"finish loading"});
    EXPECT_TRUE(NoJobIsLeft());
}

using ScanJob = Job;

TEST_F(ScanJob, TellsTheTotalAndTheActionWhenItHasRunToItsEnd)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    inbox.AddMessage();
    inbox.AddMessage();
    inbox.AddMessage();
    ChooseToFlag();

    const DWORD exitCode = Scan();

    EXPECT_EQ(exitCode, 18u);
    EXPECT_EQ(record.events, (std::vector<std::string>{"show end", "finish run"}));
    EXPECT_FALSE(jobProgress.stopped);
    EXPECT_EQ(jobProgress.total, 2);
    EXPECT_EQ(jobProgress.action, L"Mark with the flag");
    EXPECT_NE(inbox.messages[1]->flagStatus, 0);
    EXPECT_NE(inbox.messages[2]->flagStatus, 0);
}

TEST_F(ScanJob, TellsZeroWhenItFindsNothing)
{
    store.root.AddFolder(L"Inbox").AddMessage();
    ChooseToFlag();

    Scan();

    EXPECT_FALSE(jobProgress.stopped);
    EXPECT_EQ(jobProgress.total, 0);
    EXPECT_EQ(jobProgress.action, L"Mark with the flag");
}

TEST_F(ScanJob, SearchesTheFoldersTickedInTheTree)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    FakeFolder& archive = store.root.AddFolder(L"Archive");
    for (FakeFolder* folder : {&inbox, &archive})
    {
        folder->AddMessage({.subject = folder->name});
        folder->AddMessage({.subject = folder->name});
    }
    jobTree.whenFinishing = [this]
    {
        jobTree.SetCheckState(TreeItem{2}, CheckState::unchecked);
        jobTree.SetCheckState(TreeItem{3}, CheckState::partlyChecked);
    };

    Scan();

    ASSERT_EQ(jobProgress.rows.size(), 1u);
    EXPECT_EQ(jobProgress.rows[0].folderName, L"Archive");
}

TEST_F(ScanJob, TellsWhatWasFoundSoFarAndChangesNothingWhenStoppedDuringTheSearch)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    for (const wchar_t* subject : {L"a", L"a", L"b", L"b"})
        inbox.AddMessage({.subject = subject});
    ChooseToFlag();
    jobProgress.whenFound = [this] { state.stopRequested = 1; };

    Scan();

    EXPECT_TRUE(jobProgress.stopped);
    EXPECT_EQ(jobProgress.total, 1);
    for (const auto& message : inbox.messages)
        EXPECT_EQ(message->saves, 0);
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(ScanJob, CountsAsRunningWhileItsEndIsShownAndForgetsTheFoldersOnlyThen)
{
    store.root.AddFolder(L"Inbox");
    bool ran = false;
    std::size_t foldersAtTheEnd = 0;
    std::size_t foldersWhenFinishing = 9;
    jobProgress.whenShowingTheEnd = [&]
    {
        ran = state.workerThread != nullptr;
        foldersAtTheEnd = state.folders.size();
    };
    jobProgress.whenFinishing = [&] { foldersWhenFinishing = state.folders.size(); };

    Scan();

    EXPECT_TRUE(ran);
    EXPECT_EQ(foldersAtTheEnd, 2u);
    EXPECT_EQ(foldersWhenFinishing, 0u);
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(ScanJob, StartsCountingAnew)
{
    state.duplicateCount = 77;
    store.root.AddFolder(L"Inbox");

    Scan();

    EXPECT_EQ(jobProgress.total, 0);
    EXPECT_EQ(state.progressDialog, &jobProgress);
}

TEST_F(ScanJob, ShowsItsEndAndForgetsTheFoldersEvenWhenMemoryRunsOut)
{
    FakeFolder& inbox = store.root.AddFolder(L"Inbox");
    inbox.AddMessage();
    inbox.AddMessage();
    jobProgress.whenFound = [] { throw std::bad_alloc(); };

    Scan();

    EXPECT_EQ(record.events, (std::vector<std::string>{"show end", "finish run"}));
    EXPECT_TRUE(state.folders.empty());
    EXPECT_TRUE(NoJobIsLeft());
}

TEST_F(ScanJob, FinishesEvenWhenItsEndCannotBeShown)
{
    store.root.AddFolder(L"Inbox");
    jobProgress.whenShowingTheEnd = [] { throw std::bad_alloc(); };

    Scan();

    EXPECT_EQ(record.events, (std::vector<std::string>{"show end", "finish run"}));
    EXPECT_TRUE(state.folders.empty());
    EXPECT_TRUE(NoJobIsLeft());
}
}    // namespace
