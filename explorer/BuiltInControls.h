#pragma once

#include "explorer/office/CommandBars.h"

// Puts the host's own menus and buttons on its bars. The fifth menu is Tools, as add-ins expect it.
void AddBuiltInControls(CCommandBars& bars, const SharedContext& context);
