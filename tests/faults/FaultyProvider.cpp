#include "tests/faults/FaultyProvider.h"

#include "localmapi/Registration.h"
#include "tests/localmapi/Sandbox.h"

#include <filesystem>
#include <stdexcept>
#include <string>

namespace
{
constexpr wchar_t libraryName[] = L"FaultyMapi.dll";

std::wstring PathOfLibrary()
{
    wchar_t program[MAX_PATH] = L"";
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return (std::filesystem::path(program).parent_path() / libraryName).wstring();
}

// mapi32.dll looks for the default mail client when it is loaded, and only then.
void LoadBehindSystemMapi()
{
    const RegistrySandbox machine(HKEY_LOCAL_MACHINE);
    RegisterMailClient(PathOfLibrary());
    if (!::LoadLibraryW(L"mapi32.dll"))
        throw std::runtime_error("no mapi32.dll");
}

template <typename Function>
Function* Find(const char* name)
{
    const HMODULE library = ::GetModuleHandleW(libraryName);
    auto* const found = reinterpret_cast<void*>(library ? ::GetProcAddress(library, name) : nullptr);
    if (!found)
        throw std::runtime_error("mapi32.dll has not loaded the tests' provider");
    return reinterpret_cast<Function*>(found);
}
}    // namespace

FaultyProvider& FaultyProvider::Get()
{
    static FaultyProvider provider;
    return provider;
}

FaultyProvider::FaultyProvider()
{
    LoadBehindSystemMapi();
    setPlan = Find<SetFaultPlanFunction>("SetFaultPlan");
    getReport = Find<GetFaultReportFunction>("GetFaultReport");
}

FaultReport FaultyProvider::Report() const
{
    FaultReport report;
    getReport(&report);
    return report;
}
