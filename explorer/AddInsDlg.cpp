#include "explorer/AddInsDlg.h"

#include "explorer/Metrics.h"
#include "win/DataExchange.h"
#include "win/SystemMessage.h"

#include <windows.h>

#include <commctrl.h>

#include <cwchar>

namespace
{
enum Column
{
    name,
    progId,
    state
};

std::wstring DescribeResult(HRESULT result)
{
    wchar_t number[16];
    std::swprintf(number, ARRAYSIZE(number), L"0x%08lX", static_cast<unsigned long>(result));
    return SystemMessage(static_cast<DWORD>(result)) + L" (" + number + L')';
}
}    // namespace

std::wstring DescribeState(const AddIn& addIn)
{
    switch (addIn.GetState())
    {
    case AddInState::loaded:
        return L"Loaded";
    case AddInState::failed:
        return L"Failed: " + DescribeResult(addIn.GetResult());
    default:
        return L"Not loaded";
    }
}

const MessageMap& CAddInsDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCommand<&CAddInsDlg::OnLoad>(IDC_LOAD),
        OnCommand<&CAddInsDlg::OnUnload>(IDC_UNLOAD),
        OnNotify<&CAddInsDlg::OnItemChanged>(IDC_ADD_IN_LIST, static_cast<UINT>(LVN_ITEMCHANGED)),
    };
    static const MessageMap map{&CDialog::GetMessageMap(), handlers};
    return map;
}

void CAddInsDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_ADD_IN_LIST, list);
}

BOOL CAddInsDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    list.SetExtendedStyle(LVS_EX_FULLROWSELECT);
    list.InsertColumn(name, L"Name", Scaled(130));
    list.InsertColumn(progId, L"ProgID", Scaled(130));
    list.InsertColumn(state, L"State", Scaled(110));
    int row = 0;
    for (const AddIn& addIn : addIns.GetAddIns())
    {
        list.InsertItem(row, addIn.GetEntry().friendlyName);
        list.SetItemText(row++, progId, addIn.GetEntry().progId);
    }
    ShowStates();
    list.SetItemState(0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ShowSelection();
    return TRUE;
}

void CAddInsDlg::ShowStates()
{
    int row = 0;
    for (const AddIn& addIn : addIns.GetAddIns())
        list.SetItemText(row++, state, DescribeState(addIn));
}

int CAddInsDlg::GetSelection() const
{
    return static_cast<int>(list.SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void CAddInsDlg::ShowSelection()
{
    const int row = GetSelection();
    const AddIn* addIn = row < 0 ? nullptr : &addIns.GetAddIns().at(static_cast<std::size_t>(row));
    const bool loaded = addIn && addIn->GetState() == AddInState::loaded;
    ::EnableWindow(GetDlgItem(IDC_LOAD), addIn && !loaded);
    ::EnableWindow(GetDlgItem(IDC_UNLOAD), loaded);
    // The column is too narrow for a failure's text.
    const bool failed = addIn && FAILED(addIn->GetResult());
    const std::wstring text = !failed                                   ? L""
                              : addIn->GetState() == AddInState::failed ? DescribeState(*addIn)
                                                                        : DescribeResult(addIn->GetResult());
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_RESULT, text.c_str());
}

LRESULT CAddInsDlg::OnItemChanged(NMHDR&)
{
    ShowSelection();
    return 0;
}

void CAddInsDlg::OnLoad()
{
    addIns.Load(static_cast<std::size_t>(GetSelection()));
    ShowStates();
    ShowSelection();
}

void CAddInsDlg::OnUnload()
{
    addIns.Unload(static_cast<std::size_t>(GetSelection()));
    ShowStates();
    ShowSelection();
}
