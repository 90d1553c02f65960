#include "ui/ProcessProgressDlg.h"

#include "engine/ScanState.h"
#include "res/resource.h"
#include "ui/EndOfRun.h"
#include "ui/JobWait.h"
#include "ui/SaveLog.h"
#include "ui/StopQuestion.h"
#include "win/DataExchange.h"
#include "win/FileDialog.h"
#include "win/StringTable.h"
#include "win/SystemMessage.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>

#include <optional>
#include <string_view>
#include <utility>

namespace
{
enum Column
{
    folderColumn,
    subjectColumn,
    countColumn
};

constexpr int columnWidth = 130;    // at 96 DPI

StringTable Strings()
{
    return StringTable(ThisModule());
}

// The system's own dialogs; the message boxes have no caption.
class SystemPrompts : public SaveLogPrompts
{
public:
    explicit SystemPrompts(const CWnd& owner) : owner(owner) {}

    std::optional<std::wstring> AskForPath() override
    {
        CFileDialog dialog(OFN_OVERWRITEPROMPT, Strings().Load(IDS_LOG_FILE_FILTER));
        if (dialog.DoModal() != IDOK)
            return std::nullopt;
        return dialog.GetPathName();
    }
    int ShowMessage(const std::wstring& text, UINT type) override
    {
        return owner.MessageBox(text, L"", type);
    }

private:
    const CWnd& owner;
};

BOOL CALLBACK CloseDialog(HWND window, LPARAM)
{
    wchar_t className[8] = L"";
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    if (std::wstring_view(className) == L"#32770")
        ::PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}
}    // namespace

CProcessProgressDlg::CProcessProgressDlg(ScanState& settings, const CWnd* parent, JobStarter startJob)
    : CProductDlg(IDD_PROCESS_PROGRESS, parent, {IDC_REPORT_GROUP}),
      settings(settings),
      startJob(std::move(startJob))
{
}

CProcessProgressDlg::~CProcessProgressDlg()
{
    // The window may have been destroyed under a run, with the window that owns it.
    if (settings.workerThread)
        CloseEndMessage();
    StopJobAndWait(settings);
}

const MessageMap& CProcessProgressDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCommand<&CProcessProgressDlg::OnSaveLog>(IDC_SAVE_LOG),
        OnClose<&CProcessProgressDlg::OnCloseBox>(),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

void CProcessProgressDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_PROGRESS, progress);
    exchange.Control(IDC_REPORT, list);
    exchange.Control(IDC_TOTAL, total);
}

BOOL CProcessProgressDlg::OnInitDialog()
{
    CProductDlg::OnInitDialog();
    list.SetExtendedStyle(LVS_EX_FULLROWSELECT);
    InsertColumns();
    rowCount = 0;
    StartRun();
    return TRUE;
}

void CProcessProgressDlg::InsertColumns() const
{
    const int dpi = static_cast<int>(::GetDpiForWindow(GetSafeHwnd()));
    const int width = ::MulDiv(columnWidth, dpi, USER_DEFAULT_SCREEN_DPI);
    list.InsertColumn(folderColumn, Strings().Load(IDS_COLUMN_FOLDER_NAME), width);
    list.InsertColumn(subjectColumn, Strings().Load(IDS_COLUMN_SUBJECT), width);
    list.InsertColumn(countColumn, Strings().Load(IDS_COLUMN_DUPLICATE_COUNT), width);
}

void CProcessProgressDlg::StartRun()
{
    if (!startJob(settings, *this))
        MessageBox(SystemMessage(ERROR_MAX_THRDS_REACHED), Strings().Load(IDS_PRODUCT_TITLE),
                   MB_OK | MB_ICONERROR);
}

void CProcessProgressDlg::AddResultRow(const std::wstring& folderName, const std::wstring& subject,
                                       LONG count, LONG runningTotal)
{
    const int row = static_cast<int>(rowCount);
    list.InsertItem(row, folderName);
    list.SetItemText(row, subjectColumn, subject);
    list.SetItemText(row, countColumn, std::to_wstring(count));
    total.SetWindowText(std::to_wstring(runningTotal));
    list.EnsureVisible(row);
    list.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    ++rowCount;
}

void CProcessProgressDlg::StepProgress()
{
    progress.StepIt();
}

void CProcessProgressDlg::ShowEnd(bool stopped, LONG duplicateCount, const std::wstring& actionName)
{
    progress.SetPos(0);
    progress.ShowWindow(SW_HIDE);

    // Looked at once: a window that goes from now on takes the message along or keeps it from being shown.
    endMessageThread = ::GetCurrentThreadId();
    CWnd owner;
    owner.Attach(GetSafeHwnd());
    if (owner.GetSafeHwnd())
        ShowEndOfRun(owner, stopped, duplicateCount, actionName);
}

void CProcessProgressDlg::CloseEndMessage() const
{
    // Not every version of the system does so when the owner goes.
    ::EnumThreadWindows(endMessageThread, &CloseDialog, 0);
}

void CProcessProgressDlg::FinishRun(const std::function<void()>& endJob)
{
    Invoke(
        [&]
        {
            ::EnableWindow(GetDlgItem(IDC_SAVE_LOG), TRUE);
            endJob();
        });
}

void CProcessProgressDlg::OnOK()
{
    // No button stands for the Enter key here, and the list has no use for it.
}

void CProcessProgressDlg::OnCancel()
{
    if (!AskWhetherToStop(*this, settings))
        CProductDlg::OnCancel();
}

void CProcessProgressDlg::OnCloseBox()
{
    if (!AskWhetherToStop(*this, settings))
        Default();
}

void CProcessProgressDlg::OnSaveLog()
{
    const std::vector<LogRow> rows = ReadRows();
    if (rows.empty())
        return;
    SystemPrompts prompts(*this);
    SaveLog(Strings(), rows, prompts);
}

std::vector<LogRow> CProcessProgressDlg::ReadRows() const
{
    std::vector<LogRow> rows;
    for (int row = 0; row < list.GetItemCount(); ++row)
        rows.push_back({list.GetItemText(row, folderColumn), list.GetItemText(row, subjectColumn),
                        list.GetItemText(row, countColumn)});
    return rows;
}
