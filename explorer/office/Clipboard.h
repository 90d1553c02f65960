#pragma once

#include "win/GdiObject.h"

#include <windows.h>

#include <comdef.h>

// A copy of the bitmap on the clipboard. Throws _com_error when the clipboard is another program's at the
// moment or holds no bitmap. `window` may be null.
BitmapHandle CopyBitmapFromClipboard(HWND window);
