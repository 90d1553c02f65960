#pragma once

#include "win/WinThread.h"

struct ScanState;
class ScanProgressView;

// The background thread: loads the folder tree or runs a scan, as loadingTree says when it starts, once, and
// ends. Whoever makes it prepares the state (StartTreeLoading, StartScan) and lends it for the time of the
// job. Never initialises COM: the store's objects were made on the dialogs' thread and are used here as they
// are.
class CProgressThread : public CWinThread
{
public:
    ScanState* state = nullptr;
    ScanProgressView* progressDialog = nullptr;    // for a scan only

    static const CRuntimeClass& RuntimeClass();
    const CRuntimeClass& GetRuntimeClass() const override;
    const MessageMap& GetMessageMap() const override;

protected:
    BOOL InitInstance() override;
    int Run() override;
    int ExitInstance() override;

private:
    void LoadFolderTree();
    void RunScan();
};

// Starts the thread that loads the folder tree into folderTree, or one that scans and tells `progressDialog`
// about it. False, with workerThread null, when no thread can be had.
bool StartTreeLoading(ScanState& state);
bool StartScan(ScanState& state, ScanProgressView& progressDialog);
