#pragma once

#include <windows.h>

#include <string>

// The system's text for a Win32 error or an HRESULT, on one line and without a full stop; the number in
// hexadecimal when the system has none.
std::wstring SystemMessage(DWORD code);
