#include "win/DataExchange.h"

void CDataExchange::Control(int id, CWnd& control)
{
    if (!control.GetSafeHwnd())
        control.SubclassWindow(dialog.GetDlgItem(id));
}

void CDataExchange::Text(int id, std::wstring& text)
{
    CWnd control;
    control.Attach(dialog.GetDlgItem(id));
    if (direction == toControls)
        control.SetWindowText(text);
    else
        text = control.GetWindowText();
}
