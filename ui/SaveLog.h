#pragma once

#include "ui/LogWriter.h"
#include "win/StringTable.h"

#include <windows.h>

#include <optional>
#include <span>
#include <string>

// Who is asked where the report shall go, and told what became of it.
class SaveLogPrompts
{
public:
    virtual ~SaveLogPrompts() = default;

    // The full path that the user has chosen; none when the user gives up.
    virtual std::optional<std::wstring> AskForPath() = 0;
    // A message box of that type (MB_...); the button pressed (IDOK, IDCANCEL).
    virtual int ShowMessage(const std::wstring& text, UINT type) = 0;
};

// Asks for a file until one can be written or the user gives up, and writes the report into it. The file's
// name gets the ending ".txt" unless it has it. A file that exists is empty from then on, even when the user
// decides for another one.
void SaveLog(StringTable strings, std::span<const LogRow> rows, SaveLogPrompts& prompts);
