#pragma once

#include <string>

// The folder that the product is installed in, as the registry has it for all users of the machine; empty
// when it names none.
std::wstring InstallFolder();

// The same as Help reads it: empty as well when the user may not change the registry's entry, or when the
// folder and its terminating zero take more than 130 characters.
std::wstring InstallFolderOfHelp();
