#pragma once

#include "win/Wnd.h"

struct ScanState;

// Asks in front of `dialog` whether the job that runs is to stop, and tells it so after a Yes. False, with
// nothing asked, when no job runs.
bool AskWhetherToStop(const CWnd& dialog, ScanState& state);
