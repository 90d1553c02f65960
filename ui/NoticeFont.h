#pragma once

#include "win/GdiObject.h"

// The large font of the notices that ask the user to wait.
FontHandle MakeNoticeFont();
