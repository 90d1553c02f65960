#pragma once

#include "win/Wnd.h"

#include <string>

// Binds a dialog's members to its controls: the controls once, when the dialog is initialised, the values
// each time, in the direction asked for.
class CDataExchange
{
public:
    enum Direction
    {
        toControls,
        fromControls
    };

    CDataExchange(const CWnd& dialog, Direction direction) noexcept : dialog(dialog), direction(direction) {}

    void Control(int id, CWnd& control);    // subclassed, so that the control's own message map is heard
    void Text(int id, std::wstring& text);

private:
    const CWnd& dialog;
    Direction direction;
};
