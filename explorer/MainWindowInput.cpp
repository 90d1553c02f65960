#include "explorer/MainWindow.h"

#include "explorer/Metrics.h"
#include "explorer/office/CommandBarButton.h"
#include "explorer/resource.h"

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

#include <iterator>

// Where the window's parts lie, and what mouse and keys do to them.

namespace
{
constexpr int noticeMarginAt96 = 24;

void Place(const CWnd& window, const RECT& area, bool shown)
{
    ::SetWindowPos(window.GetSafeHwnd(), nullptr, area.left, area.top, area.right - area.left,
                   area.bottom - area.top,
                   SWP_NOZORDER | SWP_NOACTIVATE | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}
}    // namespace

void CMainWindow::LayOut()
{
    RECT area{};
    ::GetClientRect(GetSafeHwnd(), &area);
    status.SendMessage(WM_SIZE);
    RECT bottom{};
    ::GetWindowRect(status.GetSafeHwnd(), &bottom);
    area.bottom -= bottom.bottom - bottom.top;
    area.top = toolBars.Place(area.right);
    layout.SetArea(area);
    const bool hasStore = store != nullptr;
    Place(folders, layout.GetFolders(), hasStore);
    Place(messages, layout.GetMessages(), hasStore);
    Place(reading, layout.GetReading(), hasStore);
    const int margin = Scaled(noticeMarginAt96);
    ::InflateRect(&area, -margin, -margin);
    Place(notice, area, !hasStore);
}

LRESULT CMainWindow::OnSize(WPARAM kind, LPARAM)
{
    if (kind != SIZE_MINIMIZED)
        LayOut();
    return 0;
}

LRESULT CMainWindow::OnActivate(WPARAM kind, LPARAM)
{
    // The pane that has the focus gets it back.
    const HWND focus = ::GetFocus();
    if (LOWORD(kind) == WA_INACTIVE && focus && ::IsChild(GetSafeHwnd(), focus))
        lastFocus = focus;
    return Default();
}

LRESULT CMainWindow::OnSetFocus(WPARAM, LPARAM)
{
    ::SetFocus(lastFocus);
    return 0;
}

HBRUSH CMainWindow::OnColour(HDC, HWND control)
{
    // A pane that can only be read would be grey.
    return control == reading.GetSafeHwnd() ? ::GetSysColorBrush(COLOR_WINDOW)
                                            : reinterpret_cast<HBRUSH>(Default());
}

LRESULT CMainWindow::OnSetCursor(WPARAM, LPARAM where)
{
    POINT point{};
    ::GetCursorPos(&point);
    ::ScreenToClient(GetSafeHwnd(), &point);
    const SplitLayout::Gap gap =
        LOWORD(where) == HTCLIENT && store ? layout.HitTest(point) : SplitLayout::Gap::none;
    if (gap == SplitLayout::Gap::none)
        return Default();
    ::SetCursor(::LoadCursorW(nullptr, gap == SplitLayout::Gap::upright ? IDC_SIZEWE : IDC_SIZENS));
    return TRUE;
}

LRESULT CMainWindow::OnButtonDown(WPARAM, LPARAM place)
{
    dragged = store ? layout.HitTest({GET_X_LPARAM(place), GET_Y_LPARAM(place)}) : SplitLayout::Gap::none;
    if (dragged != SplitLayout::Gap::none)
        ::SetCapture(GetSafeHwnd());
    return 0;
}

LRESULT CMainWindow::OnMouseMove(WPARAM, LPARAM place)
{
    if (dragged != SplitLayout::Gap::none)
    {
        layout.Drag(dragged, {GET_X_LPARAM(place), GET_Y_LPARAM(place)});
        LayOut();
    }
    return 0;
}

LRESULT CMainWindow::OnButtonUp(WPARAM, LPARAM)
{
    if (dragged != SplitLayout::Gap::none)
        ::ReleaseCapture();
    return 0;
}

LRESULT CMainWindow::OnCaptureChanged(WPARAM, LPARAM)
{
    // Released, or taken by another window in the middle of a drag.
    dragged = SplitLayout::Gap::none;
    return 0;
}

bool CMainWindow::TranslateKey(const MSG& message)
{
    const bool ours = message.hwnd == GetSafeHwnd() || ::IsChild(GetSafeHwnd(), message.hwnd);
    if (message.message != WM_KEYDOWN || !ours)
        return false;
    if (message.wParam == VK_F5)
        OnBuiltInCommand(IDM_REFRESH);
    else if (message.wParam == VK_TAB || message.wParam == VK_F6)
        CycleFocus(::GetKeyState(VK_SHIFT) < 0);
    else
        return false;
    return true;
}

void CMainWindow::CycleFocus(bool back)
{
    if (!store)
        return;
    const HWND panes[] = {folders.GetSafeHwnd(), messages.GetSafeHwnd(), reading.GetSafeHwnd()};
    constexpr std::size_t count = std::size(panes);
    std::size_t place = 0;
    while (place < count && panes[place] != ::GetFocus())
        ++place;
    ::SetFocus(panes[place == count ? 0 : (place + (back ? count - 1 : 1)) % count]);
}

LRESULT CMainWindow::OnToolTip(NMHDR& notification)
{
    auto& tip = reinterpret_cast<NMTBGETINFOTIPW&>(notification);
    const int instance = tip.iItem - static_cast<int>(firstControlCommand);
    const CommandControl* control = application->GetBars().FindInstance(instance);
    if (control && tip.cchTextMax > 0)
        ::lstrcpynW(tip.pszText, control->GetState().tooltip.c_str(), tip.cchTextMax);
    return 0;
}

LRESULT CMainWindow::OnDropDown(NMHDR& notification)
{
    const auto& pressed = reinterpret_cast<const NMTOOLBARW&>(notification);
    const int instance = pressed.iItem - static_cast<int>(firstControlCommand);
    CommandControl* control = application->GetBars().FindInstance(instance);
    CCommandBarControls* entries = control ? control->GetSubControls() : nullptr;
    if (!entries)
        return TBDDRET_NODEFAULT;
    RECT corner = pressed.rcButton;
    ::MapWindowPoints(notification.hwndFrom, nullptr, reinterpret_cast<POINT*>(&corner), 2);
    const MenuView shown(*entries, MenuView::Kind::popup);
    ::TrackPopupMenu(shown.get(), TPM_LEFTALIGN | TPM_TOPALIGN, corner.left, corner.bottom, 0, GetSafeHwnd(),
                     nullptr);
    return TBDDRET_DEFAULT;
}
