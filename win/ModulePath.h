#pragma once

#include <string>

// The full path of the program or DLL that this code is linked into. Throws COleException, std::bad_alloc.
std::wstring ThisModulePath();
