#pragma once

#include "win/GdiObject.h"

#include <windows.h>

// One of our module's bitmap resources, in its own colours whatever the display's are; empty when there is no
// such resource.
BitmapHandle LoadBitmapResource(UINT id) noexcept;
