// The entry point of each library that is built here. It wraps the C runtime's own: it makes the library's
// heap before it, and gives back after it what the runtime leaves behind at unloading: the thread library
// that is linked into every library takes a slot of thread-local storage when it is first used and never
// frees it. A process has about a thousand slots, so one that loads and unloads a library over and over would
// run out of them and end. The build rules lead all calls of TlsAlloc and TlsFree inside the library to the
// two functions here.
#include "LibraryHeap.h"

#include <windows.h>

#include <array>
#include <atomic>

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace
{
constexpr DWORD none = TLS_OUT_OF_INDEXES;

// The slots that this library holds. The runtime takes two, the heap one; those beyond the room here would
// stay taken.
std::array<std::atomic<DWORD>, 4> held{none, none, none, none};

// Named directly, the system's functions would be the two below. Nothing here may need the thread library: it
// asks for its slot while it starts.
template <typename Function>
Function SystemFunction(const char* name) noexcept
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void (*)()>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name)));
}

bool Replace(DWORD before, DWORD after) noexcept
{
    for (std::atomic<DWORD>& place : held)
    {
        DWORD expected = before;
        if (place.compare_exchange_strong(expected, after))
            return true;
    }
    return false;
}

DWORD WINAPI TakeSlot() noexcept
{
    const DWORD slot = SystemFunction<decltype(&::TlsAlloc)>("TlsAlloc")();
    if (slot != none)
        Replace(none, slot);
    return slot;
}

BOOL WINAPI FreeSlot(DWORD slot) noexcept
{
    Replace(slot, none);
    return SystemFunction<decltype(&::TlsFree)>("TlsFree")(slot);
}

void FreeHeldSlots() noexcept
{
    for (const std::atomic<DWORD>& place : held)
        if (const DWORD slot = place; slot != none)
            FreeSlot(slot);
}
}    // namespace

// What the library finds where it looks for the imported functions.
extern "C"
{
    extern DWORD(WINAPI* const libraryTlsAlloc)() noexcept;
    extern BOOL(WINAPI* const libraryTlsFree)(DWORD) noexcept;
    DWORD(WINAPI* const libraryTlsAlloc)() noexcept = &TakeSlot;
    BOOL(WINAPI* const libraryTlsFree)(DWORD) noexcept = &FreeSlot;
}

extern "C" BOOL WINAPI LibraryEntry(HINSTANCE module, DWORD reason, LPVOID reserved)
{
    const bool hasHeap = reason != DLL_PROCESS_ATTACH || MakeLibraryHeap();
    const BOOL done = hasHeap && DllMainCRTStartup(module, reason, reserved);
    if (reason == DLL_THREAD_DETACH)
        FreeBlocksOfThread();
    // Destructors of the library may still lock a mutex and free memory, so its slots and its heap go last;
    // with the process they go anyway. A library that could not start is unloaded without being told.
    const bool unloading = reason == DLL_PROCESS_DETACH && !reserved;
    if (unloading || (reason == DLL_PROCESS_ATTACH && !done))
    {
        FreeHeldSlots();
        FreeLibraryHeap();
    }
    return done;
}
