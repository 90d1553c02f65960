#pragma once

#include "win/Wnd.h"

#include <windows.h>

// A button; what is checked (BST_...) matters for check boxes and radio buttons only.
class CButton : public CWnd
{
public:
    int GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int check) const { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
};
