#pragma once

#include <windows.h>

#include <string>

// Writes UTF-8 to STD_OUTPUT_HANDLE or STD_ERROR_HANDLE, or to the console that this program was started
// from; nowhere when there is neither.
void WriteTo(DWORD stream, const std::wstring& text);
