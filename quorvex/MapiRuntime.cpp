#include "quorvex/MapiRuntime.h"

#include "quorvex/MapiError.h"

#include <atomic>
#include <string>

namespace
{
std::atomic<const MapiFunctions*> replacement = nullptr;
std::atomic<bool> anyThreadPrepared = false;

template <class Function>
void FindFunction(HMODULE library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
    if (!function)
        throw MapiError(MAPI_E_NOT_FOUND,
                        L"The mail system of this computer (mapi32.dll) lacks Extended MAPI. "
                        L"Install a mail program that has it and make it the default.");
}

MapiFunctions LoadMapi()
{
    const HMODULE library = LoadLibraryExW(L"mapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library)
        throw MapiError(
            HRESULT_FROM_WIN32(GetLastError()),
            L"The mail system of this computer (mapi32.dll) cannot be loaded. Install a mail program "
            L"that has Extended MAPI and make it the default.");
    MapiFunctions functions;
    FindFunction(library, "MAPIInitialize", functions.initialize);
    FindFunction(library, "MAPIUninitialize", functions.uninitialize);
    FindFunction(library, "MAPILogonEx", functions.logonEx);
    FindFunction(library, "MAPIAllocateBuffer", functions.allocateBuffer);
    FindFunction(library, "MAPIFreeBuffer", functions.freeBuffer);
    return functions;    // the library stays: objects made by it may outlive any owner here
}

using ShutdownInProgress = BOOLEAN WINAPI();

ShutdownInProgress* FindShutdownInProgress()
{
    return reinterpret_cast<ShutdownInProgress*>(reinterpret_cast<void (*)()>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
}

// Written before there is a slot whose callback reads it: to look it up there would take the loader's lock,
// and the system calls with the lock of all such slots held, which other ending threads want while they hold
// the loader's.
ShutdownInProgress* shutdownInProgress = nullptr;

// A process on its way out has lost its other threads, and with them the locks that they held.
bool ProcessIsEnding()
{
    return shutdownInProgress && shutdownInProgress();
}

void WINAPI OnThreadEnd(void* preparedFor)
{
    if (preparedFor && !ProcessIsEnding())
        static_cast<const MapiFunctions*>(preparedFor)->uninitialize();
}

// The slot holds, for each prepared thread, the functions it was prepared with. The callback must find this
// module at the end of the last thread, so the module is never unloaded once the slot is there.
DWORD ThreadSlot()
{
    static const DWORD slot = []
    {
        HMODULE self = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<const wchar_t*>(&OnThreadEnd), &self);
        shutdownInProgress = FindShutdownInProgress();
        return FlsAlloc(OnThreadEnd);
    }();
    if (slot == FLS_OUT_OF_INDEXES)
        throw MapiError(E_OUTOFMEMORY, L"No thread-local storage is left in this process.");
    return slot;
}
}    // namespace

const MapiFunctions& Mapi()
{
    if (const MapiFunctions* functions = replacement.load())
        return *functions;
    static const MapiFunctions loaded = LoadMapi();
    return loaded;
}

void ReplaceMapi(const MapiFunctions* functions) noexcept
{
    replacement = functions;
}

void PrepareThread()
{
    const MapiFunctions& functions = Mapi();
    const DWORD slot = ThreadSlot();
    if (FlsGetValue(slot) == &functions)
        return;
    OnThreadEnd(FlsGetValue(slot));
    FlsSetValue(slot, nullptr);
    // Without the flag MAPI would want a message loop on this thread for its notifications.
    MAPIINIT_0 options{MAPI_INIT_VERSION, MAPI_MULTITHREAD_NOTIFICATIONS};
    const HRESULT result = functions.initialize(&options);
    if (FAILED(result))
        throw MapiError(result,
                        L"The mail system of this computer does not start (" + NameOfFailure(result) +
                            L"). Install a mail program that has Extended MAPI, make it the default and "
                            L"try again.");
    FlsSetValue(slot, const_cast<MapiFunctions*>(&functions));
    anyThreadPrepared = true;
}

void PrepareThreadForRelease() noexcept
{
    if (!anyThreadPrepared)
        return;
    try
    {
        PrepareThread();
    }
    catch (...)
    {
        // MAPI does not start on this thread; what is let go must go all the same.
    }
}
