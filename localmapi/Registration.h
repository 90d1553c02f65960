#pragma once

#include <string>

// Makes the library at `modulePath` the machine's default mail client, through which the system's mapi32.dll
// finds it, and remembers which client was the default before. May be done again, with another path too.
// Needs the right to write below HKEY_LOCAL_MACHINE; throws MapiError.
void RegisterMailClient(const std::wstring& modulePath);

// Takes that back. The former default client comes back, unless another has become the default meanwhile:
// that one stays. Other clients' keys are never touched. Throws MapiError.
void UnregisterMailClient();
