#include "win/ThisModule.h"

namespace
{
HMODULE FindThisModule(DWORD flags) noexcept
{
    HMODULE module = nullptr;
    // Any address inside the module names it.
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                         reinterpret_cast<const wchar_t*>(&FindThisModule), &module);
    return module;
}
}    // namespace

HINSTANCE ThisModule() noexcept
{
    return FindThisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
}

ModuleHandle ReferenceToThisModule() noexcept
{
    return ModuleHandle(FindThisModule(0));
}
