#pragma once

#include "win/RegistrationScope.h"

#include <windows.h>

#include <oaidl.h>

// This module's own type libraries: resources of the type TYPELIB, the first of which describes its classes.

// The one with that id and version, the caller's to release. TYPE_E_CANTLOADLIBRARY when there is none.
HRESULT LoadOwnTypeLibrary(const GUID& library, WORD major, WORD minor, ITypeLib** result) noexcept;

// Registers the first one, or takes that back. The functions of OLEAUT32.DLL are looked up when they are
// needed.
HRESULT RegisterOwnTypeLibrary(RegistrationScope scope) noexcept;
HRESULT UnregisterOwnTypeLibrary(RegistrationScope scope) noexcept;
