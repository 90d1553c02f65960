#include "engine/ProgressThread.h"

#include "engine/FolderTree.h"
#include "engine/FolderTreeView.h"
#include "engine/ScanDriver.h"
#include "engine/ScanProgressView.h"
#include "engine/ScanState.h"

#include <windows.h>

namespace
{
constexpr int jobDone = 18;    // the exit code of every job, however it went

// One stage of a job. What the store refuses is dealt with where it happens; this is for the rest, memory
// above all: later stages run all the same, for whoever waits for the job must be set free.
template <typename Function>
void Attempt(Function&& stage) noexcept
{
    try
    {
        stage();
    }
    catch (...)
    {
    }
}

void FillTree(ScanState& state, FolderTreeView& tree)
{
    if (!OpenDefaultStore(state))
        tree.Close();
    EnumerateFolder(state, tree, CFolder(state.folderRoot), TreeItem::none);
}

void ShowWholeTree(const ScanState& state, FolderTreeView& tree)
{
    if (state.treeRootItem == TreeItem::none)
        return;
    tree.ExpandBranch(state.treeRootItem);
    tree.EnsureVisible(state.treeRootItem);
}

bool StartJob(ScanState& state, bool loadingTree, ScanProgressView* progressDialog)
{
    // Suspended; the lowest bit means nothing to a thread.
    constexpr DWORD creationFlags = CREATE_SUSPENDED | 1;

    state.loadingTree = loadingTree ? 1 : 0;
    state.stopRequested = 0;
    state.workerThread = nullptr;
    auto* thread = static_cast<CProgressThread*>(
        BeginThread(CProgressThread::RuntimeClass(), THREAD_PRIORITY_NORMAL, 0, creationFlags));
    if (!thread)
        return false;
    state.workerThread = thread;
    thread->state = &state;
    thread->progressDialog = progressDialog;
    thread->ResumeThread();
    return true;
}
}    // namespace

bool StartTreeLoading(ScanState& state)
{
    return StartJob(state, true, nullptr);
}

bool StartScan(ScanState& state, ScanProgressView& progressDialog)
{
    return StartJob(state, false, &progressDialog);
}

const CRuntimeClass& CProgressThread::RuntimeClass()
{
    static constexpr CRuntimeClass description{"CProgressThread",
                                               []() -> CObject* { return new CProgressThread; }};
    return description;
}

const CRuntimeClass& CProgressThread::GetRuntimeClass() const
{
    return RuntimeClass();
}

const MessageMap& CProgressThread::GetMessageMap() const
{
    static const MessageMap map{&CWinThread::GetMessageMap(), {}};
    return map;
}

BOOL CProgressThread::InitInstance()
{
    return TRUE;
}

int CProgressThread::Run()
{
    if (state->loadingTree)
        LoadFolderTree();
    else
        RunScan();
    ::PostQuitMessage(jobDone);
    return CWinThread::Run();
}

int CProgressThread::ExitInstance()
{
    return CWinThread::ExitInstance();
}

void CProgressThread::LoadFolderTree()
{
    FolderTreeView& tree = *state->folderTree;
    Attempt([&] { FillTree(*state, tree); });
    Attempt([&] { ShowWholeTree(*state, tree); });
    tree.FinishLoading(
        [this]
        {
            state->loadingTree = 0;
            state->stopRequested = 0;
            state->workerThread = nullptr;    // last: whoever waits for this lets go of the state
        });
}

void CProgressThread::RunScan()
{
    ScanProgressView& progress = *progressDialog;
    Attempt([this] { MarkSelectedFolders(*state, *state->folderTree); });
    state->progressDialog = &progress;
    state->duplicateCount = 0;
    Attempt([&] { RunDuplicateScan(*state, state->folderRoot); });
    Attempt([&] { ApplyDuplicateAction(*state); });
    Attempt([&] { progress.ShowEnd(state->stopRequested == 1, state->duplicateCount, state->actionName); });
    state->folders.clear();
    progress.FinishRun(
        [this]
        {
            state->stopRequested = 0;
            state->workerThread = nullptr;    // last, as above
        });
}
