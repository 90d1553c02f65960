#pragma once

#include "addin/TalmoreQuorvexOutlookDuplicateRemoverModule.h"

#include <windows.h>

// The module with its type library, then the proxy. The first failure ends it.
HRESULT RegisterLibrary(const CTalmoreQuorvexOutlookDuplicateRemoverModule& module) noexcept;
HRESULT UnregisterLibrary(const CTalmoreQuorvexOutlookDuplicateRemoverModule& module) noexcept;
