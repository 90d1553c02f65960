#pragma once

#include <string>

// The folder that the product is installed in, as the registry has it for all users of the machine or else
// for this user; empty when it names none.
std::wstring InstallFolder();

// The same as Help reads it: a folder that takes more than 130 characters with its terminating zero counts as
// none, and the user's own entry comes before an entry of the machine that the user may not change.
std::wstring InstallFolderOfHelp();
