#include "ui/MsgDlg.h"

#include "res/resource.h"
#include "win/DataExchange.h"

CMsgDlg::CMsgDlg(const CWnd* parent) : CProductDlg(IDD_MESSAGE, parent) {}

void CMsgDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Text(IDC_MESSAGE_TEXT, message);
}
