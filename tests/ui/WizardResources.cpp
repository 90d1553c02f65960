#include "tests/ui/WizardResources.h"

#include <windows.h>

#include <objbase.h>

#include <chrono>
#include <ostream>

namespace
{
// Not every system counts them for us; then each value that a handle can have is tried, until many in a row
// are none.
DWORD CountKernelHandles()
{
    DWORD kept = 0;
    if (::GetProcessHandleCount(::GetCurrentProcess(), &kept) && kept != 0)
        return kept;
    constexpr ULONG_PTR step = 4;
    constexpr DWORD manyInARow = 512;
    DWORD count = 0;
    DWORD missed = 0;
    for (ULONG_PTR value = step; missed < manyInARow; value += step)
    {
        DWORD flags = 0;
        const bool isHandle = ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
        missed = isHandle ? 0 : missed + 1;
        count += isHandle ? 1 : 0;
    }
    return count;
}

// A server that is not loaded has nothing left; one that is gets a reference, once.
bool IsIdle(const wchar_t* server, HMODULE& kept)
{
    using CanUnloadNow = HRESULT WINAPI();
    if (!kept && !::GetModuleHandleExW(0, server, &kept))
        return true;
    const auto canUnload =
        reinterpret_cast<CanUnloadNow*>(reinterpret_cast<void*>(::GetProcAddress(kept, "DllCanUnloadNow")));
    return canUnload && canUnload() == S_OK;
}
}    // namespace

WizardResources WizardResources::Now()
{
    static HMODULE quorvex = nullptr;
    static HMODULE localMapi = nullptr;
    ::CoFreeUnusedLibraries();
    const bool quorvexIdle = IsIdle(L"QuorvexDll.dll", quorvex);
    const bool localMapiIdle = IsIdle(L"LocalMapi.dll", localMapi);
    return {HandleCounts::Now(), CountKernelHandles(), quorvexIdle, localMapiIdle};
}

WizardResources WizardResources::Settled(const WizardResources& rest, DWORD saves)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(5);
    WizardResources now = Now();
    while (!now.IsBackAt(rest, saves) && Clock::now() < end)
    {
        ::Sleep(20);
        now = Now();
    }
    return now;
}

bool WizardResources::IsBackAt(const WizardResources& rest, DWORD saves) const
{
    constexpr DWORD keptInAll = 12;
    constexpr DWORD handlesOfOneSave = 5;
    return windows.gdi <= rest.windows.gdi + keptInAll && windows.user <= rest.windows.user + keptInAll &&
           handles <= rest.handles + keptInAll + handlesOfOneSave * saves && quorvexIdle && localMapiIdle;
}

std::ostream& operator<<(std::ostream& stream, const WizardResources& resources)
{
    return stream << resources.windows << ", " << resources.handles << " handles"
                  << (resources.quorvexIdle ? "" : ", objects of QuorvexDll")
                  << (resources.localMapiIdle ? "" : ", objects of LocalMapi");
}
