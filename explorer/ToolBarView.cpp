#include "explorer/ToolBarView.h"

#include "explorer/Face.h"
#include "explorer/MenuView.h"
#include "explorer/Metrics.h"
#include "explorer/office/CommandBarButton.h"
#include "explorer/resource.h"
#include "win/OleException.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>

namespace
{
constexpr int gapAt96 = 4;

HWND CreateToolBar(HWND parent, const std::wstring& name)
{
    constexpr DWORD style = WS_CHILD | WS_CLIPSIBLINGS | TBSTYLE_FLAT | TBSTYLE_LIST | TBSTYLE_TOOLTIPS |
                            CCS_NODIVIDER | CCS_NORESIZE | CCS_NOPARENTALIGN;
    const HWND window = ::CreateWindowExW(0, TOOLBARCLASSNAMEW, name.c_str(), style, 0, 0, 0, 0, parent,
                                          reinterpret_cast<HMENU>(IDC_TOOL_BAR), ThisModule(), nullptr);
    if (!window)
        throw COleException(HRESULT_FROM_WIN32(::GetLastError()));
    ::SendMessageW(window, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    return window;
}
}    // namespace

ToolBarView::ToolBarView(HWND parent, CCommandBar& bar) : window(CreateToolBar(parent, bar.GetName()))
{
    const int size = FaceSize();
    images.Create(size, size, ILC_COLOR24 | ILC_MASK, 4, 4);
    ::SendMessageW(window.get(), TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS);
    ::SendMessageW(window.get(), TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
    for (CommandControl* control : bar.GetControls().GetControls())
        if (control->GetState().visible)
            AddButton(*control);
    ::SendMessageW(window.get(), TB_AUTOSIZE, 0, 0);
}

void ToolBarView::AddButton(CommandControl& control)
{
    const ControlState& state = control.GetState();
    if (state.beginsGroup && ::SendMessageW(window.get(), TB_BUTTONCOUNT, 0, 0) > 0)
    {
        TBBUTTON separator{};
        separator.fsStyle = BTNS_SEP;
        ::SendMessageW(window.get(), TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&separator));
    }
    CCommandBarButton* button = control.AsButton();
    TBBUTTON shown{};
    shown.iBitmap = button && button->ShowsFace() ? AddFace(images, button->GetFace()) : I_IMAGENONE;
    shown.idCommand = static_cast<int>(CommandOf(state.instance));
    shown.fsState = state.enabled ? TBSTATE_ENABLED : 0;
    if (button && button->IsDown())
        shown.fsState |= TBSTATE_CHECKED;
    shown.fsStyle = BTNS_AUTOSIZE;
    if (!button || button->ShowsCaption())
        shown.fsStyle |= BTNS_SHOWTEXT;
    if (control.GetSubControls())
        shown.fsStyle |= BTNS_WHOLEDROPDOWN;
    const std::wstring caption = PlainCaption(state.caption);
    shown.iString = reinterpret_cast<INT_PTR>(caption.c_str());
    ::SendMessageW(window.get(), TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&shown));
}

SIZE ToolBarView::GetSize() const noexcept
{
    SIZE size{};
    ::SendMessageW(window.get(), TB_GETMAXSIZE, 0, reinterpret_cast<LPARAM>(&size));
    return size;
}

void ToolBarArea::Rebuild(HWND parent, const std::vector<CCommandBar*>& bars)
{
    views.clear();
    for (CCommandBar* bar : bars)
        if (bar->IsShown())
            views.push_back(std::make_unique<ToolBarView>(parent, *bar));
}

int ToolBarArea::Place(int width)
{
    const int gap = Scaled(gapAt96);
    int x = gap;
    int y = gap / 2;
    int rowHeight = 0;
    for (const auto& view : views)
    {
        const SIZE size = view->GetSize();
        if (x > gap && x + size.cx > width)
        {
            x = gap;
            y += rowHeight + gap / 2;
            rowHeight = 0;
        }
        ::SetWindowPos(view->GetWindow(), nullptr, x, y, size.cx, size.cy,
                       SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
        x += size.cx + gap;
        rowHeight = std::max(rowHeight, static_cast<int>(size.cy));
    }
    return y + rowHeight + gap / 2;
}
