#include "ui/ProductDlg.h"

#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include <algorithm>

namespace
{
constexpr COLORREF lightYellow = RGB(255, 245, 196);
constexpr COLORREF blue = RGB(0, 0, 255);

// The bitmap that a static has loaded for itself; not every version of that control deletes it.
BitmapHandle TakePicture(HWND control)
{
    wchar_t className[8] = L"";
    ::GetClassNameW(control, className, ARRAYSIZE(className));
    if (::lstrcmpiW(className, WC_STATICW) != 0)
        return nullptr;
    return BitmapHandle(reinterpret_cast<HBITMAP>(::SendMessageW(control, STM_SETIMAGE, IMAGE_BITMAP, 0)));
}
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
        OnMessage<&CProductDlg::DeletePictures>(WM_DESTROY),
    };
    static const MessageMap map{&CDialog::GetMessageMap(), handlers};
    return map;
}

BOOL CProductDlg::OnInitDialog()
{
    // A themed group box draws its caption in the theme's colour, whatever it is told. No theme knows this
    // name; an empty one is not taken everywhere.
    for (const int id : blueCaptions)
        ::SetWindowTheme(GetDlgItem(id), L" ", L" ");
    return CDialog::OnInitDialog();
}

LRESULT CProductDlg::DeletePictures(WPARAM, LPARAM)
{
    for (HWND child = ::GetWindow(GetSafeHwnd(), GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT))
        TakePicture(child);
    return Default();
}

HBRUSH CProductDlg::CtlColor(HDC context, HWND control)
{
    Default();
    ::SetBkColor(context, background);
    if (std::find(blueCaptions.begin(), blueCaptions.end(), ::GetDlgCtrlID(control)) != blueCaptions.end())
        ::SetTextColor(context, blue);
    return backgroundBrush.get();
}
