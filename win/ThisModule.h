#pragma once

#include <windows.h>

// The program or DLL that this code is linked into; its resources are ours.
HINSTANCE ThisModule() noexcept;

// A reference that keeps that module loaded; whoever holds it calls FreeLibrary or FreeLibraryAndExitThread.
HMODULE ReferenceToThisModule() noexcept;
