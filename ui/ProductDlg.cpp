#include "ui/ProductDlg.h"

#include <windows.h>

#include <uxtheme.h>

#include <algorithm>

namespace
{
constexpr COLORREF lightYellow = RGB(255, 245, 196);
constexpr COLORREF blue = RGB(0, 0, 255);
}    // namespace

CProductDlg::CProductDlg(UINT templateId, const CWnd* parent, std::initializer_list<int> blueCaptions)
    : CDialog(templateId, parent),
      blueCaptions(blueCaptions),
      background(lightYellow),
      backgroundBrush(::CreateSolidBrush(background))
{
}

const MessageMap& CProductDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCtlColor<&CProductDlg::CtlColor>(),
    };
    static const MessageMap map{&CDialog::GetMessageMap(), handlers};
    return map;
}

BOOL CProductDlg::OnInitDialog()
{
    // A themed group box draws its caption in the theme's colour, whatever it is told.
    for (const int id : blueCaptions)
        ::SetWindowTheme(GetDlgItem(id), L"", L"");
    return CDialog::OnInitDialog();
}

HBRUSH CProductDlg::CtlColor(HDC context, HWND control)
{
    Default();
    ::SetBkColor(context, background);
    if (std::find(blueCaptions.begin(), blueCaptions.end(), ::GetDlgCtrlID(control)) != blueCaptions.end())
        ::SetTextColor(context, blue);
    return backgroundBrush.get();
}
