#pragma once

#include <windows.h>

// Puts a picture of 16 by 16 pixels of one colour on the clipboard.
void PutPictureOnClipboard(COLORREF colour);
