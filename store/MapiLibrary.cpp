#include "store/MapiLibrary.h"

#include <utility>

namespace
{
template <typename Function>
void Find(const ModuleHandle& module, const char* name, Function& function) noexcept
{
    function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(::GetProcAddress(module.get(), name)));
}

// Some libraries export their utility functions with the bytes of their arguments in the name, some without.
template <typename Function>
void FindEither(const ModuleHandle& module, const char* name, const char* otherName,
                Function& function) noexcept
{
    Find(module, name, function);
    if (!function)
        Find(module, otherName, function);
}

void FindFunctions(MapiLibrary& library) noexcept
{
    const ModuleHandle& module = library.mapiModule;
    Find(module, "MAPIInitialize", library.mapiInitialize);
    Find(module, "MAPIUninitialize", library.mapiUninitialize);
    Find(module, "MAPILogonEx", library.mapiLogonEx);
    Find(module, "MAPIFreeBuffer", library.mapiFreeBuffer);
    FindEither(module, "HrQueryAllRows@24", "HrQueryAllRows", library.hrQueryAllRows);
    FindEither(module, "HrGetOneProp@12", "HrGetOneProp", library.hrGetOneProp);
}

void PublishFunctions(const MapiLibrary& library) noexcept
{
    publishedMapiFreeBuffer = library.mapiFreeBuffer;
    publishedHrQueryAllRows = library.hrQueryAllRows;
    publishedHrGetOneProp = library.hrGetOneProp;
}

// Without the two Hr functions the steps that need them fail, and no more.
bool IsUsable(const MapiLibrary& library) noexcept
{
    return library.mapiInitialize && library.mapiLogonEx && library.mapiUninitialize &&
           library.mapiFreeBuffer;
}

void FillPaths(MapiPaths& paths) noexcept
{
    ::lstrcpynW(paths.mailClient, L"Outlook", MapiPaths::size);
    ::lstrcpynW(paths.library, L"mapi32.dll", MapiPaths::size);
}

void Unload(MapiLibrary& library) noexcept
{
    MapiLibrary unloaded;
    unloaded.mapiPaths = library.mapiPaths;
    library = std::move(unloaded);
}
}    // namespace

bool LoadMapiLibrary(MapiLibrary& library) noexcept
{
    FillPaths(library.mapiPaths);
    library.mapiModule.reset(::LoadLibraryW(library.mapiPaths.library));
    if (!library.mapiModule)
        return false;
    FindFunctions(library);
    PublishFunctions(library);
    if (IsUsable(library) && library.mapiInitialize(nullptr) == S_OK)
        return true;
    WithdrawMapiFunctions();
    Unload(library);
    return false;
}

void WithdrawMapiFunctions() noexcept
{
    publishedMapiFreeBuffer = nullptr;
    publishedHrQueryAllRows = nullptr;
    publishedHrGetOneProp = nullptr;
}

void UnloadMapiLibrary(MapiLibrary& library) noexcept
{
    library.mapiUninitialize();
    Unload(library);
}
