#pragma once

#include "win/Wnd.h"

#include <windows.h>

// Keeps a control that is shown from drawing itself while many of its items are changed; at the end it is
// drawn once, when its thread comes to it. Any thread. The control is borrowed.
class RedrawPause
{
public:
    explicit RedrawPause(const CWnd& control) : control(control) { control.SendMessage(WM_SETREDRAW, FALSE); }
    RedrawPause(const RedrawPause&) = delete;
    RedrawPause& operator=(const RedrawPause&) = delete;
    ~RedrawPause()
    {
        control.SendMessage(WM_SETREDRAW, TRUE);
        ::InvalidateRect(control.GetSafeHwnd(), nullptr, TRUE);
    }

private:
    const CWnd& control;
};
