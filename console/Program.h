#pragma once

#include "console/Console.h"

#include <string>
#include <vector>

// Does what the words that follow the program's name ask for; whatever fails is told on standard error, in
// one line.
ExitCode RunProgram(const std::vector<std::wstring>& words, Console& console) noexcept;
