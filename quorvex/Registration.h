#pragma once

#include <windows.h>

// Self-registration by the platform's registrar and the module's script resource. Functions throw MapiError.

enum class RegisterFor
{
    Machine,
    User,    // below HKEY_CURRENT_USER\Software\Classes, which needs no administrator
};

// Writes, or removes again, all that COM needs to create sessions from this module.
void RegisterServer(HINSTANCE module, RegisterFor whom);
void UnregisterServer(HINSTANCE module, RegisterFor whom);
