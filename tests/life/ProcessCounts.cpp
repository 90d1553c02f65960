#include "tests/life/ProcessCounts.h"

#include "tests/faults/HeapBlocks.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <vector>

namespace
{
constexpr std::size_t mostThreadSlots = 64 + 1024;

std::size_t CountThreadSlots()
{
    std::vector<DWORD> taken;
    for (DWORD slot; (slot = ::TlsAlloc()) != TLS_OUT_OF_INDEXES;)
        taken.push_back(slot);
    for (const DWORD slot : taken)
        ::TlsFree(slot);
    return mostThreadSlots - taken.size();
}

double CommittedKilobytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage) / 1024;
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

KeptServers::KeptServers()
{
    ::GetModuleHandleExW(0, L"QuorvexDll.dll", &servers[0]);
    ::GetModuleHandleExW(0, L"LocalMapi.dll", &servers[1]);
}

KeptServers::~KeptServers()
{
    for (const HMODULE server : servers)
        if (server)
            ::FreeLibrary(server);
}

bool KeptServers::AreLoaded() const
{
    return std::ranges::all_of(servers, [](HMODULE server) { return server != nullptr; });
}

bool KeptServers::AreIdle() const
{
    return std::ranges::all_of(servers, [](HMODULE server) { return !server || IsIdle(server); });
}
