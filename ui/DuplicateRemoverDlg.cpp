#include "ui/DuplicateRemoverDlg.h"

#include "engine/ProgressThread.h"
#include "engine/ScanSettings.h"
#include "res/resource.h"
#include "ui/AboutDlg.h"
#include "ui/DuplicateSettingsDlg.h"
#include "ui/FolderImages.h"
#include "ui/JobWait.h"
#include "ui/MsgDlg.h"
#include "ui/NoticeFont.h"
#include "ui/StopQuestion.h"
#include "win/DataExchange.h"
#include "win/OleException.h"
#include "win/StringTable.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <algorithm>
#include <utility>

CDuplicateRemoverDlg::CDuplicateRemoverDlg(bool exchangeProfile, HelpViewer showHelp)
    : CProductDlg(IDD_DUPLICATE_REMOVER, nullptr, {IDC_FOLDERS_GROUP}),
      TreeControlView(tree),
      showHelp(std::move(showHelp))
{
    state.exchangeProfile = exchangeProfile;
    state.folderTree = this;
}

CDuplicateRemoverDlg::~CDuplicateRemoverDlg()
{
    StopJobAndWait(state);
}

const MessageMap& CDuplicateRemoverDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnClose<&CDuplicateRemoverDlg::OnCloseBox>(),
        OnCommand<&CDuplicateRemoverDlg::OnAbout>(IDC_ABOUT),
        OnCommand<&CDuplicateRemoverDlg::OnHelp>(IDC_HELP_TOPIC),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

void CDuplicateRemoverDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_FOLDER_TREE, tree);
}

BOOL CDuplicateRemoverDlg::OnInitDialog()
{
    CProductDlg::OnInitDialog();
    com.emplace();
    OpenSession();
    ShowImages();
    ShowNotice();
    LoadFolders();
    return TRUE;
}

void CDuplicateRemoverDlg::OpenSession()
{
    if (!state.storeSession.Create())
        return;
    try
    {
        state.storeSession.LogOn();
    }
    catch (const COleException&)
    {
        // Without a session the loading finds no store and says so by closing.
        state.storeSession = CRDOSession();
    }
}

void CDuplicateRemoverDlg::ShowImages()
{
    checkImages = MakeCheckImages();
    tree.SetImageList(checkImages.get(), TVSIL_STATE);
    folderImages = MakeFolderImages();
    tree.SetImageList(folderImages.get(), TVSIL_NORMAL);
    tree.SetBkColor(RGB(255, 255, 255));
}

void CDuplicateRemoverDlg::ShowNotice()
{
    // The font goes with this function; the notice is drawn in what the system puts in its place.
    const FontHandle font = MakeNoticeFont();
    ::SendDlgItemMessageW(GetSafeHwnd(), IDC_PLEASE_WAIT, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()),
                          TRUE);
}

void CDuplicateRemoverDlg::LoadFolders()
{
    state.folders.clear();
    if (!StartTreeLoading(state))
        throw COleException(HRESULT_FROM_WIN32(ERROR_MAX_THRDS_REACHED));
}

void CDuplicateRemoverDlg::Close()
{
    SendMessage(WM_CLOSE);
}

void CDuplicateRemoverDlg::FinishLoading(const std::function<void()>& endJob)
{
    Invoke(
        [&]
        {
            for (const int button : {IDC_ABOUT, IDC_HELP_TOPIC, IDOK})
                ::EnableWindow(GetDlgItem(button), TRUE);
            ::ShowWindow(GetDlgItem(IDC_PLEASE_WAIT), SW_HIDE);
            endJob();    // last: with it the job lets go of this dialog
        });
}

bool CDuplicateRemoverDlg::IsAnyFolderTicked() const
{
    return std::any_of(state.folders.begin(), state.folders.end(),
                       [this](const FOLDER_INFO& folder)
                       {
                           const CheckState check = GetCheckState(folder.checkItem);
                           return check == CheckState::checked || check == CheckState::partlyChecked;
                       });
}

void CDuplicateRemoverDlg::OnOK()
{
    if (!IsAnyFolderTicked())
    {
        CMsgDlg message;
        message.message = StringTable(ThisModule()).Load(IDS_SELECT_A_FOLDER);
        message.DoModal();
        return;
    }
    ResetSettings(state);
    OpenSettings();
}

void CDuplicateRemoverDlg::OpenSettings()
{
    // Hidden for as long as the next pages are there; shown again even when they fail.
    struct HiddenMeanwhile
    {
        const CWnd& page;
        LONG closeFlag = 0;

        explicit HiddenMeanwhile(const CWnd& page) : page(page) { page.ShowWindow(SW_HIDE); }
        ~HiddenMeanwhile()
        {
            if (!closeFlag)
                page.ShowWindow(SW_SHOW);
        }
    } hidden(*this);

    CDuplicateSettingsDlg settings(state, hidden.closeFlag);
    settings.DoModal();
    if (hidden.closeFlag == 1)
        SendMessage(WM_CLOSE);
}

void CDuplicateRemoverDlg::OnCancel()
{
    if (!AskWhetherToStop(*this, state))
        CProductDlg::OnCancel();
}

void CDuplicateRemoverDlg::OnCloseBox()
{
    if (!AskWhetherToStop(*this, state))
        Default();
}

void CDuplicateRemoverDlg::OnAbout()
{
    CAboutDlg().DoModal();
}

void CDuplicateRemoverDlg::OnHelp()
{
    showHelp(::GetWindow(GetSafeHwnd(), GW_OWNER), HelpFile());
}
