#pragma once

#include <string>
#include <string_view>

// The text with every character in the upper case of the system's own table, which knows no language: two
// texts that differ in case only become equal. Keeps the length.
std::wstring FoldCase(std::wstring_view text);
