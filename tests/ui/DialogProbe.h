#pragma once

#include <windows.h>

#include <string>
#include <vector>

// What a test looks at in a dialog that is shown; any thread while the dialog's own handles messages.

// The size in pixels of a size in dialog units of that dialog.
SIZE PixelsOf(HWND dialog, int width, int height);
SIZE ClientSizeOf(HWND window);
RECT RectIn(HWND dialog, HWND control);    // in the dialog's client coordinates

// The children of the dialog in the order of its template.
std::vector<HWND> ChildrenOf(HWND dialog);
// The static of that text; null when there is none.
HWND StaticWithText(HWND dialog, const std::wstring& text);
// The ids that the Tab key goes through, from the first control on.
std::vector<int> TabOrderOf(HWND dialog);

// What the dialog answers to a control, or to itself, that asks for its colours by `message`
// (WM_CTLCOLOR...).
struct Colours
{
    UINT brushStyle;
    COLORREF brush;
    COLORREF textBackground;
    COLORREF text;    // black unless the dialog sets another
};
Colours ColoursOf(HWND dialog, UINT message, HWND control);

// How much room the text of a static takes when it is broken at the control's width, and whether that is
// inside its client area.
SIZE TextSizeOf(HWND control);
bool TextFits(HWND control);

// The pairs of controls of the dialog that cover one another (a group box may surround others), the controls
// that reach out of its client area, and the texts that do not fit, each by what it is; empty for a sound
// layout.
std::vector<std::wstring> LayoutFaultsOf(HWND dialog);

LOGFONTW FontOf(HWND window);

// The colours of the pixels that the control draws in that part of its client area, row by row.
std::vector<COLORREF> PixelsDrawnBy(HWND control, const RECT& part);

inline bool operator==(const SIZE& left, const SIZE& right)
{
    return left.cx == right.cx && left.cy == right.cy;
}
