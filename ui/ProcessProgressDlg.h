#pragma once

#include "engine/ProgressThread.h"
#include "engine/ScanProgressView.h"
#include "ui/LogWriter.h"
#include "ui/ProductDlg.h"
#include "win/ListCtrl.h"
#include "win/ProgressCtrl.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

struct ScanState;

// Runs a scan and lists what it finds; at its end the list can be saved as a text file. Closing asks before
// it stops a run, and waits for it. Destroyed during a run all the same, the dialog stops the run and waits.
class CProcessProgressDlg : public CProductDlg, public ScanProgressView
{
public:
    // Starts a job that reports to the view; false when that cannot be done.
    using JobStarter = std::function<bool(ScanState& settings, ScanProgressView& view)>;

    // `settings` is borrowed for the dialog's life.
    explicit CProcessProgressDlg(ScanState& settings, const CWnd* parent = nullptr,
                                 JobStarter startJob = &StartScan);
    ~CProcessProgressDlg() override;

    const MessageMap& GetMessageMap() const override;

    void AddResultRow(const std::wstring& folderName, const std::wstring& subject, LONG count,
                      LONG runningTotal) override;
    void StepProgress() override;
    void ShowEnd(bool stopped, LONG duplicateCount, const std::wstring& actionName) override;
    void FinishRun(const std::function<void()>& endJob) override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;
    void OnOK() override;
    void OnCancel() override;

private:
    void InsertColumns() const;
    void StartRun();
    void OnCloseBox();
    void OnSaveLog();
    std::vector<LogRow> ReadRows() const;
    void CloseEndMessage() const;

    ScanState& settings;
    JobStarter startJob;
    CProgressCtrl progress;
    CListCtrl list;
    CWnd total;
    LONG rowCount = 0;                         // the job's thread alone touches it during a run
    std::atomic<DWORD> endMessageThread{0};    // the id of the job's thread, once it shows how the run ended
};
