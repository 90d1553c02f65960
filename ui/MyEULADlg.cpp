#include "ui/MyEULADlg.h"

#include "res/resource.h"
#include "ui/InstallFolder.h"
#include "win/DataExchange.h"

#include <windows.h>

#include <commctrl.h>

namespace
{
constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);
constexpr int columnWidth = 505;    // at 96 DPI

TextLines ReadAgreement()
{
    const std::wstring folder = InstallFolder();
    return folder.empty() ? TextLines() : ReadTextLines(folder + L"\\eula.dat");
}
}    // namespace

CMyEULADlg::CMyEULADlg(const CWnd* parent) : CProductDlg(IDD_EULA, parent) {}

const MessageMap& CMyEULADlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnNotify<&CMyEULADlg::GiveRowText>(IDC_EULA_LINES, static_cast<UINT>(LVN_GETDISPINFOW)),
        OnNotify<&CMyEULADlg::FindRow>(IDC_EULA_LINES, static_cast<UINT>(LVN_ODFINDITEMW)),
        OnNotify<&CMyEULADlg::DrawRow>(IDC_EULA_LINES, static_cast<UINT>(NM_CUSTOMDRAW)),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

void CMyEULADlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_EULA_LINES, list);
}

BOOL CMyEULADlg::OnInitDialog()
{
    const BOOL result = CProductDlg::OnInitDialog();
    list.SetBkColor(white);
    // The tip shows the whole of a line that is wider than the column.
    list.SetExtendedStyle(LVS_EX_LABELTIP);
    const int dpi = static_cast<int>(::GetDpiForWindow(GetSafeHwnd()));
    list.InsertColumn(0, L"", ::MulDiv(columnWidth, dpi, USER_DEFAULT_SCREEN_DPI));
    lines = ReadAgreement();
    // The rows stay here and the list asks for those that it shows: a long text opens at once.
    list.SendMessage(LVM_SETITEMCOUNT, static_cast<WPARAM>(lines.Count()));
    return result;
}

LRESULT CMyEULADlg::GiveRowText(NMHDR& notice)
{
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(notice).item;
    const auto row = static_cast<std::size_t>(item.iItem);
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0 || row >= lines.Count())
        return 0;
    const std::size_t length = lines[row].copy(item.pszText, static_cast<std::size_t>(item.cchTextMax) - 1);
    item.pszText[length] = L'\0';
    return 0;
}

LRESULT CMyEULADlg::FindRow(NMHDR&)
{
    // No row: letters typed into a text to be read go nowhere.
    return -1;
}

LRESULT CMyEULADlg::DrawRow(NMHDR& notice)
{
    auto& drawing = reinterpret_cast<NMLVCUSTOMDRAW&>(notice);
    if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (drawing.nmcd.dwDrawStage != CDDS_ITEMPREPAINT)
        return CDRF_DODEFAULT;
    drawing.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED | CDIS_HOT);
    drawing.clrText = black;
    drawing.clrTextBk = white;
    return CDRF_NEWFONT;
}
