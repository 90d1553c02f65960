#pragma once

#include "win/Wnd.h"

#include <windows.h>

#include <commctrl.h>

// A progress bar; from 0 to 100 by steps of 10 until it is told otherwise.
class CProgressCtrl : public CWnd
{
public:
    void StepIt() const { SendMessage(PBM_STEPIT); }    // past the end it starts again
    void SetPos(int position) const { SendMessage(PBM_SETPOS, static_cast<WPARAM>(position)); }
    int GetPos() const { return static_cast<int>(SendMessage(PBM_GETPOS)); }
    void SetRange(int lowest, int highest) const
    {
        SendMessage(PBM_SETRANGE32, static_cast<WPARAM>(lowest), highest);
    }
};
