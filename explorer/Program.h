#pragma once

#include <string>
#include <vector>

// The program from its words to its exit code: 0 when all went well, 1 when an add-in failed or there was
// nothing to click, 2 for wrong words. Initialises COM for the calling thread.
int RunProgram(const std::vector<std::wstring>& words, int showCommand);
