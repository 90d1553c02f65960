#pragma once

#include "win/GdiObject.h"

#include <windows.h>

// A length at 96 DPI, in this display's pixels.
inline int Scaled(int length) noexcept
{
    return ::MulDiv(length, static_cast<int>(::GetDpiForSystem()), USER_DEFAULT_SCREEN_DPI);
}

// The font of the system's messages, or the same in bold.
FontHandle MakeMessageFont(bool bold);
