#pragma once

#include "win/ModuleHandle.h"

#include <windows.h>

// The program or DLL that this code is linked into; its resources are ours.
HINSTANCE ThisModule() noexcept;

// A reference that keeps that module loaded.
ModuleHandle ReferenceToThisModule() noexcept;
