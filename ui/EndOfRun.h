#pragma once

#include "win/Wnd.h"

#include <windows.h>

#include <string>

// What the user is told at the end of a run.
std::wstring EndOfRunMessage(bool stopped, LONG duplicateCount, const std::wstring& actionName);

// Tells it in a message box in front of `dialog`; returns when it has been dismissed. The box runs on the
// calling thread, which need not be the dialog's.
void ShowEndOfRun(const CWnd& dialog, bool stopped, LONG duplicateCount, const std::wstring& actionName);
