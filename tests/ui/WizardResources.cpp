#include "tests/ui/WizardResources.h"

#include <windows.h>

#include <objbase.h>

#include <chrono>
#include <ostream>

namespace
{
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
