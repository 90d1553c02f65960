#include "tests/life/ProcessCounts.h"

#include "tests/faults/HeapBlocks.h"
#include "tests/win/HandleCounts.h"
#include "tests/win/ThreadSlots.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>

namespace
{
constexpr std::size_t mostThreadSlots = 64 + 1024;

std::size_t CountThreadSlots()
{
    return mostThreadSlots - CountFreeThreadSlots();
}

double CommittedKilobytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage) / 1024;
}

// Null where the process has not loaded it.
ModuleHandle LoadedModule(const wchar_t* name)
{
    HMODULE module = nullptr;
    ::GetModuleHandleExW(0, name, &module);
    return ModuleHandle(module);
}

bool IsIdle(HMODULE server)
{
    using CanUnloadNow = HRESULT WINAPI();
    const auto canUnload =
        reinterpret_cast<CanUnloadNow*>(reinterpret_cast<void*>(::GetProcAddress(server, "DllCanUnloadNow")));
    return canUnload && canUnload() == S_OK;
}
}    // namespace

const char* NameOf(Held kind)
{
    static constexpr std::array<const char*, heldKinds> names{
        "kernel handles", "GDI objects", "USER objects", "thread slots", "heap blocks", "KiB committed"};
    return names.at(static_cast<std::size_t>(kind));
}

std::array<double, heldKinds> CountHeld()
{
    const HandleCounts windows = HandleCounts::Now();
    return {static_cast<double>(CountKernelHandles()), static_cast<double>(windows.gdi),
            static_cast<double>(windows.user),         static_cast<double>(CountThreadSlots()),
            static_cast<double>(CountHeapBlocks()),    CommittedKilobytes()};
}

KeptServers::KeptServers() : servers{LoadedModule(L"QuorvexDll.dll"), LoadedModule(L"LocalMapi.dll")} {}

bool KeptServers::AreLoaded() const
{
    return std::ranges::all_of(servers, [](const ModuleHandle& server) { return server != nullptr; });
}

bool KeptServers::AreIdle() const
{
    return std::ranges::all_of(servers,
                               [](const ModuleHandle& server) { return !server || IsIdle(server.get()); });
}
