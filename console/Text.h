#pragma once

#include <string>
#include <string_view>
#include <vector>

// True when the texts agree letter by letter, upper and lower case taken as the same in every script.
bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right);

// The text between double quotes, fit for one line of a message.
std::wstring Quoted(std::wstring_view text);

// "a, b or c"; the text itself when there is only one.
std::wstring JoinAlternatives(const std::vector<std::wstring>& texts);

// The text with every control character replaced by a blank: it stays on its line and cannot steer a
// terminal.
std::wstring OnOneLine(std::wstring_view text);

// Columns that the text takes, a surrogate pair counted once.
int CountColumns(std::wstring_view text);

// The text cut to at most `columns` columns, "..." being the end of what was cut.
std::wstring Shortened(std::wstring_view text, int columns);

// The text followed by blanks up to `columns` columns; a longer text is left as it is.
std::wstring Padded(std::wstring_view text, int columns);
