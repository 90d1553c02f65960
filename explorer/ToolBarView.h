#pragma once

#include "explorer/office/CommandBar.h"
#include "win/ImageList.h"

#include <windows.h>

#include <memory>
#include <vector>

struct WindowDestroyer
{
    void operator()(HWND window) const noexcept { ::DestroyWindow(window); }
};
using WindowHandle = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;

// One tool bar with the visible controls of a command bar.
class ToolBarView
{
public:
    ToolBarView(HWND parent, CCommandBar& bar);    // hidden until it is placed

    HWND GetWindow() const noexcept { return window.get(); }
    SIZE GetSize() const noexcept;    // what its buttons need, in pixels

private:
    void AddButton(CommandControl& control);

    CImageList images;    // outlives the window, which borrows it
    WindowHandle window;
};

// All visible tool bars, in rows above the panes.
class ToolBarArea
{
public:
    void Rebuild(HWND parent, const std::vector<CCommandBar*>& bars);
    int Place(
        int width);    // from the upper left corner, in rows of at most that width; the height of all rows

private:
    std::vector<std::unique_ptr<ToolBarView>> views;
};
