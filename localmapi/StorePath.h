#pragma once

#include <optional>
#include <string>

// The DOS path of the store's file: environment variable LOCALMAPI_STORE, else the registry's value "Path"
// under HKCU\Software\Talmorex\LocalMapi; null when neither names one. The variable may hold a Unix path
// where the system knows how to turn it into a DOS path. Whether there is such a file is not looked at.
std::optional<std::wstring> FindStorePath();
