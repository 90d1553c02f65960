#include "explorer/mail/MapiLibrary.h"

#include "win/OleException.h"

#include <windows.h>

#include <mapiutil.h>

#include <cwchar>
#include <span>
#include <string>

namespace
{
[[noreturn]] void ThrowFailure(HRESULT code, const std::wstring& text)
{
    throw COleDispatchException(code, 0, text, L"mapi32.dll");
}

template <typename Function>
void FindFunction(HMODULE library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(::GetProcAddress(library, name)));
    if (!function)
        ThrowFailure(MAPI_E_NOT_FOUND, L"The mail system of this computer (mapi32.dll) lacks Extended MAPI");
}

MapiFunctions LoadMapi()
{
    // Never freed: objects made by it may outlive any owner here.
    const HMODULE library = ::LoadLibraryExW(L"mapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library)
        ThrowFailure(HRESULT_FROM_WIN32(::GetLastError()),
                     L"The mail system of this computer (mapi32.dll) cannot be loaded");
    MapiFunctions functions{};
    FindFunction(library, "MAPIInitialize", functions.initialize);
    FindFunction(library, "MAPIUninitialize", functions.uninitialize);
    FindFunction(library, "MAPILogonEx", functions.logonEx);
    FindFunction(library, "MAPIFreeBuffer", functions.freeBuffer);
    return functions;
}
}    // namespace

const MapiFunctions& Mapi()
{
    static const MapiFunctions loaded = LoadMapi();
    return loaded;
}

MapiInitialization::MapiInitialization()
{
    // Without the flag MAPI would want a message loop of its own kind on this thread.
    MAPIINIT_0 options{MAPI_INIT_VERSION, MAPI_MULTITHREAD_NOTIFICATIONS};
    CheckMapi(Mapi().initialize(&options), L"start the mail system of this computer");
}

MapiInitialization::~MapiInitialization()
{
    Mapi().uninitialize();
}

void MapiRowsDeleter::operator()(SRowSet* rows) const noexcept
{
    for (const SRow& row : std::span(rows->aRow, rows->cRows))
        if (row.lpProps)
            Mapi().freeBuffer(row.lpProps);
    Mapi().freeBuffer(rows);
}

void CheckMapi(HRESULT result, const wchar_t* step)
{
    if (SUCCEEDED(result))
        return;
    wchar_t code[16];
    std::swprintf(code, ARRAYSIZE(code), L"0x%08lX", static_cast<unsigned long>(result));
    ThrowFailure(result, std::wstring(L"Cannot ") + step + L" (error " + code + L")");
}
