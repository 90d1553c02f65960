#pragma once

#include "explorer/office/CommandBarControls.h"
#include "win/GdiObject.h"

#include <windows.h>

#include <memory>
#include <type_traits>
#include <vector>

struct MenuDestroyer
{
    void operator()(HMENU menu) const noexcept { ::DestroyMenu(menu); }
};
using MenuHandle = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDestroyer>;

// The command that a window is sent for a control: above every id of the host's own.
inline constexpr UINT firstControlCommand = 0x8000;
inline UINT CommandOf(int instance) noexcept
{
    return firstControlCommand + static_cast<UINT>(instance);
}

// A menu that shows the visible controls of a bar or pop-up, its pop-ups as submenus, with their pictures.
class MenuView
{
public:
    enum class Kind
    {
        bar,
        popup
    };

    MenuView(const CCommandBarControls& controls, Kind kind);

    HMENU get() const noexcept { return menu.get(); }    // borrowed; lives as long as this

private:
    MenuHandle Build(const CCommandBarControls& controls, Kind kind);
    void Append(HMENU to, UINT place, CommandControl& control);

    std::vector<BitmapHandle> faces;    // a menu only borrows them
    MenuHandle menu;
};
