#include "quorvex/ClassFactory.h"
#include "quorvex/ComBoundary.h"
#include "quorvex/Module.h"
#include "quorvex/Registration.h"

#include <windows.h>

#include <objbase.h>

#include <cwchar>

namespace
{
HRESULT Register(RegisterFor whom) noexcept
{
    const HRESULT result = ComBoundary([&] { RegisterServer(Module::instance, whom); });
    if (FAILED(result))
        (void)ComBoundary([&] { UnregisterServer(Module::instance, whom); });    // leave no half of it
    return result;
}

HRESULT Unregister(RegisterFor whom) noexcept
{
    return ComBoundary([&] { UnregisterServer(Module::instance, whom); });
}
}    // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
        Module::instance = instance;
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, LPVOID* object)
{
    return GetClassObject(classId, iid, object);
}

STDAPI DllCanUnloadNow()
{
    return Module::count == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer()
{
    return Register(RegisterFor::Machine);
}

STDAPI DllUnregisterServer()
{
    return Unregister(RegisterFor::Machine);
}

// The command line "user" registers for the current user alone.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine)
{
    const bool forUser = commandLine && _wcsicmp(commandLine, L"user") == 0;
    const RegisterFor whom = forUser ? RegisterFor::User : RegisterFor::Machine;
    return install ? Register(whom) : Unregister(whom);
}
