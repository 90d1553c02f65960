#include "explorer/MenuView.h"

#include "explorer/Face.h"
#include "explorer/office/CommandBarButton.h"

#include <windows.h>

#include <string>

MenuView::MenuView(const CCommandBarControls& controls, Kind kind) : menu(Build(controls, kind)) {}

MenuHandle MenuView::Build(const CCommandBarControls& controls, Kind kind)
{
    MenuHandle built(kind == Kind::bar ? ::CreateMenu() : ::CreatePopupMenu());
    UINT place = 0;
    for (CommandControl* control : controls.GetControls())
    {
        if (!control->GetState().visible)
            continue;
        if (control->GetState().beginsGroup && kind == Kind::popup && place > 0)
            ::InsertMenuW(built.get(), place++, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
        Append(built.get(), place++, *control);
    }
    return built;
}

void MenuView::Append(HMENU to, UINT place, CommandControl& control)
{
    const ControlState& state = control.GetState();
    std::wstring caption = state.caption;
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_ID | MIIM_STRING | MIIM_STATE;
    item.fState = state.enabled ? MFS_ENABLED : MFS_DISABLED;
    item.wID = CommandOf(state.instance);
    MenuHandle inner;
    if (CCommandBarControls* entries = control.GetSubControls())
    {
        inner = Build(*entries, Kind::popup);
        item.fMask |= MIIM_SUBMENU;
        item.hSubMenu = inner.get();
    }
    if (CCommandBarButton* button = control.AsButton())
    {
        if (!button->GetShortcut().empty())
            caption += L'\t' + button->GetShortcut();
        if (button->IsDown())
            item.fState |= MFS_CHECKED;
        if (button->ShowsFace())
        {
            faces.push_back(MakeMenuFace(button->GetFace()));
            item.fMask |= MIIM_BITMAP;
            item.hbmpItem = faces.back().get();
        }
    }
    item.dwTypeData = caption.data();
    if (::InsertMenuItemW(to, place, TRUE, &item))
        (void)inner.release();    // now the menu's
}
