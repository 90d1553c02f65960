#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

struct ModuleUnloader
{
    void operator()(HMODULE module) const noexcept { ::FreeLibrary(module); }
};

// Owns one load of a module, as LoadLibrary gives it, and takes it back.
using ModuleHandle = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleUnloader>;
