#include "tests/ui/JobDialog.h"

#include "engine/FolderTree.h"
#include "engine/ProgressThread.h"
#include "ui/EndOfRun.h"
#include "win/DataExchange.h"

CJobDialog::CJobDialog(ScanState& state, Job job)
    : CProductDlg(IDD_JOB, nullptr),
      TreeControlView(tree),
      state(state),
      job(job)
{
    state.folderTree = this;
}

const MessageMap& CJobDialog::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCommand<&CJobDialog::OnStop>(IDC_JOB_STOP),
        OnCommand<&CJobDialog::OnDone>(IDC_JOB_DONE),
        OnClose<&CJobDialog::OnCloseBox>(),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

BOOL CJobDialog::OnInitDialog()
{
    CProductDlg::OnInitDialog();
    if (job == Job::loadTree)
        return StartTreeLoading(state);
    OpenDefaultStore(state);
    EnumerateFolder(state, *this, CFolder(state.folderRoot), TreeItem::none);
    return StartScan(state, *this);
}

void CJobDialog::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_JOB_TREE, tree);
}

TreeItem CJobDialog::InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                                int selectedImage)
{
    whenInserting();
    return TreeControlView::InsertItem(parent, place, text, image, selectedImage);
}

void CJobDialog::Close()
{
    SendMessage(WM_CLOSE);
}

void CJobDialog::OnCloseBox()
{
    ++closeRequests;
}

void CJobDialog::FinishLoading(const std::function<void()>& endJob)
{
    Finish(endJob);
}

void CJobDialog::AddResultRow(const std::wstring&, const std::wstring&, LONG, LONG runningTotal)
{
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_JOB_TOTAL, std::to_wstring(runningTotal).c_str());
    whenFound();
}

void CJobDialog::ShowEnd(bool stopped, LONG duplicateCount, const std::wstring& actionName)
{
    ShowEndOfRun(*this, stopped, duplicateCount, actionName);
}

void CJobDialog::FinishRun(const std::function<void()>& endJob)
{
    Finish(endJob);
}

void CJobDialog::Finish(const std::function<void()>& endJob)
{
    Invoke(
        [&]
        {
            ::EnableWindow(GetDlgItem(IDC_JOB_DONE), TRUE);
            endJob();
        });
}

void CJobDialog::OnStop()
{
    state.stopRequested = 1;
}

void CJobDialog::OnDone()
{
    EndDialog(IDC_JOB_DONE);
}
