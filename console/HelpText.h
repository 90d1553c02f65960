#pragma once

// What --help shows, line by line, without a line end after the last.
const wchar_t* GetHelpText();
