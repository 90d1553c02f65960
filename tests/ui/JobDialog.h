#pragma once

#include "engine/ScanProgressView.h"
#include "engine/ScanState.h"
#include "tests/ui/JobDialogIds.h"
#include "ui/ProductDlg.h"
#include "ui/TreeControlView.h"
#include "ui/TreeViewCtrl.h"

#include <atomic>
#include <functional>
#include <string>

// A dialog that runs one job of the worker thread and watches it with real controls. "Done" is enabled when
// the job has ended; "Stop" asks the job to end.
class CJobDialog : public CProductDlg, public TreeControlView, public ScanProgressView
{
public:
    enum class Job
    {
        loadTree,
        scan
    };

    // For a scan the folders are read on the dialog's own thread first.
    CJobDialog(ScanState& state, Job job);

    std::function<void()> whenInserting = [] {};    // on the worker's thread
    std::function<void()> whenFound = [] {};        // on the worker's thread
    std::atomic<int> closeRequests{0};
    CTreeViewCtrl tree;

    const MessageMap& GetMessageMap() const override;

    TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                        int selectedImage) override;
    void Close() override;
    void FinishLoading(const std::function<void()>& endJob) override;

    void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                      LONG runningTotal) override;
    void StepProgress() override {}
    void ShowEnd(bool stopped, LONG duplicateCount, const std::wstring& actionName) override;
    void FinishRun(const std::function<void()>& endJob) override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;

private:
    void OnStop();
    void OnDone();
    void OnCloseBox();
    void Finish(const std::function<void()>& endJob);

    ScanState& state;
    Job job;
};
