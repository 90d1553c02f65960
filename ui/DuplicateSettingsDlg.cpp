#include "ui/DuplicateSettingsDlg.h"

#include "engine/ScanSettings.h"
#include "res/resource.h"
#include "ui/MsgDlg.h"
#include "ui/NoticeFont.h"
#include "ui/ProcessProgressDlg.h"
#include "ui/SelectFolderDlg.h"
#include "win/Button.h"
#include "win/DataExchange.h"
#include "win/StringTable.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

namespace
{
constexpr wchar_t collecting[] = L"Please wait... Collecting information...";

// In the order of DuplicateAction.
constexpr std::array<UINT, 6> actionNames{IDS_ACTION_DELETE, IDS_ACTION_EXPIRE,
                                          IDS_ACTION_COPY,   IDS_ACTION_MOVE,
                                          IDS_ACTION_FLAG,   IDS_ACTION_DELETE_PERMANENTLY};

StringTable Strings()
{
    return StringTable(ThisModule());
}

std::wstring NameOf(DuplicateAction action)
{
    return Strings().Load(actionNames[static_cast<std::size_t>(action)]);
}

// Calls its function when it goes, also by way of an exception.
template <typename Function>
class AtEnd
{
public:
    explicit AtEnd(Function function) : function(function) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { function(); }

private:
    Function function;
};
}    // namespace

CDuplicateSettingsDlg::CDuplicateSettingsDlg(ScanState& settings, LONG& closeOwner, const CWnd* parent)
    : CProductDlg(IDD_DUPLICATE_SETTINGS, parent,
                  {IDC_TIME_SPAN_GROUP, IDC_CRITERIA_GROUP, IDC_ACTION_GROUP}),
      settings(settings),
      closeOwner(closeOwner),
      listBackground(RGB(255, 255, 255)),
      listBrush(::CreateSolidBrush(listBackground))
{
}

const MessageMap& CDuplicateSettingsDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnClose<&CDuplicateSettingsDlg::OnCloseBox>(),
        OnCommand<&CDuplicateSettingsDlg::OnActionChanged>(IDC_ACTION, CBN_SELCHANGE),
        OnCommand<&CDuplicateSettingsDlg::OnSelectDestination>(IDC_SELECT_DESTINATION),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

void CDuplicateSettingsDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_TIME_SPAN, timeSpan);
    exchange.Control(IDC_ACTION, action);
}

BOOL CDuplicateSettingsDlg::OnInitDialog()
{
    CProductDlg::OnInitDialog();
    for (const int always : {IDC_TEXT, IDC_SUBJECT, IDC_SENDER_EMAIL})
        ::CheckDlgButton(GetSafeHwnd(), always, BST_CHECKED);
    FillTimeSpans();
    FillActions();
    busy = 0;
    // Gone when this returns: from then on the status line writes in the system's own font.
    const FontHandle font = MakeNoticeFont();
    ::SendMessageW(GetDlgItem(IDC_STATUS), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    return TRUE;
}

void CDuplicateSettingsDlg::FillTimeSpans() const
{
    for (UINT text = IDS_SPAN_LAST_DAY; text <= IDS_SPAN_ANYTIME; ++text)
        timeSpan.AddString(Strings().Load(text));
    timeSpan.SetCurSel(timeSpanAnytime);
}

void CDuplicateSettingsDlg::FillActions() const
{
    for (const UINT text : actionNames)
        action.AddString(Strings().Load(text));
    action.SetCurSel(static_cast<int>(DuplicateAction::moveToDeletedItems));
}

HBRUSH CDuplicateSettingsDlg::CtlColor(HDC context, HWND control)
{
    const HBRUSH background = CProductDlg::CtlColor(context, control);
    const int id = ::GetDlgCtrlID(control);
    if (id != IDC_TIME_SPAN && id != IDC_ACTION)
        return background;
    ::SetBkColor(context, listBackground);
    return listBrush.get();
}

void CDuplicateSettingsDlg::OnActionChanged()
{
    const int index = action.GetCurSel();
    if (index == CB_ERR)
        return;
    const bool needsFolder = NeedsDestination(ActionOfIndex(index));
    for (const int control : {IDC_DESTINATION_LABEL, IDC_DESTINATION, IDC_SELECT_DESTINATION})
        ::EnableWindow(GetDlgItem(control), needsFolder);
}

void CDuplicateSettingsDlg::OnSelectDestination()
{
    settings.destFolder.ReleaseDispatch();
    settings.destFolderPath.clear();
    const AtEnd show([this] { ShowDestination(); });
    CSelectFolderDlg(settings).DoModal();
}

void CDuplicateSettingsDlg::ShowDestination() const
{
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_DESTINATION, settings.destFolderPath.c_str());
}

void CDuplicateSettingsDlg::OnOK()
{
    const HWND focus = ::GetFocus();
    ::EnableWindow(GetDlgItem(IDOK), FALSE);
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_STATUS, collecting);
    busy = 1;
    TakeCriteria();
    ChooseTimeSpan(settings, timeSpan.GetCurSel(), CurrentUnixSeconds());
    if (TakeAction())
        RunProcess();
    else
        AskForDestination(focus);
}

void CDuplicateSettingsDlg::TakeCriteria() const
{
    settings.useSenderName = IsChecked(IDC_SENDER_NAME);
    settings.useRecipientName = IsChecked(IDC_RECIPIENT_NAME);
    settings.useInternetHeader = IsChecked(IDC_INTERNET_HEADER);
    settings.useSendTime = IsChecked(IDC_SEND_TIME);
    settings.useAttachments = IsChecked(IDC_ATTACHMENT_FILES);
}

LONG CDuplicateSettingsDlg::IsChecked(int checkBox) const
{
    return ::IsDlgButtonChecked(GetSafeHwnd(), checkBox) == BST_CHECKED ? 1 : 0;
}

bool CDuplicateSettingsDlg::TakeAction() const
{
    const DuplicateAction chosen = ActionOfIndex(action.GetCurSel());
    return ChooseAction(settings, chosen, NameOf(chosen));
}

void CDuplicateSettingsDlg::AskForDestination(HWND focus)
{
    const AtEnd idle([this, focus] { BecomeIdle(focus); });
    CMsgDlg message;
    message.message = Strings().Load(IDS_SELECT_DESTINATION);
    message.DoModal();
}

void CDuplicateSettingsDlg::BecomeIdle(HWND focus)
{
    busy = 0;
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_STATUS, L"");
    ::EnableWindow(GetDlgItem(IDOK), TRUE);
    // The button may have lost it when it was disabled.
    if (focus)
        SendMessage(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(focus), TRUE);
}

void CDuplicateSettingsDlg::RunProcess()
{
    closeOwner = 1;
    CProcessProgressDlg progress(settings);
    // Whatever happens to the run: nobody could close a hidden page.
    const AtEnd close([this] { SendMessage(WM_CLOSE); });
    ShowWindow(SW_HIDE);
    progress.DoModal();
}

void CDuplicateSettingsDlg::OnCancel()
{
    if (busy)
        closeOwner = 1;
    CProductDlg::OnCancel();
}

void CDuplicateSettingsDlg::OnCloseBox()
{
    if (busy)
        closeOwner = 1;
    Default();
}
