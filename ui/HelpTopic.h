#pragma once

#include <windows.h>

#include <string>

// Opens a compiled help file with HTML Help, which is loaded on first use and says itself when the file is
// missing. `owner` may be null. COleException where there is no HTML Help.
void ShowHelpTopic(HWND owner, const std::wstring& file);

// The path of the product's help file.
std::wstring HelpFile();
