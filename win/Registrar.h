#pragma once

#include "win/RegistrationScope.h"

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

// What a script writes between percent signs, and what stands for it.
using ScriptReplacements = std::vector<std::pair<std::wstring, std::wstring>>;

// Runs the registry script `number`, a resource of type REGISTRY of this module, by the platform's registrar:
// to write what it names, or to remove it. %MODULE% stands for this module's path. For the user alone
// everything that the script has below HKCR goes into the user's own classes.
HRESULT RunRegistryScript(UINT number, bool write, RegistrationScope scope,
                          const ScriptReplacements& replacements = {}) noexcept;
