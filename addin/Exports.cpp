#include "addin/ProxyStub.h"
#include "addin/SelfRegistration.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverModule.h"

#include <windows.h>

#include <objbase.h>

#include <cwchar>

namespace
{
CTalmoreQuorvexOutlookDuplicateRemoverModule module;
}    // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved)
{
    return reason == DLL_PROCESS_ATTACH ? PrxDllMain(instance, reason, reserved) : TRUE;
}

STDAPI DllCanUnloadNow()
{
    return PrxDllCanUnloadNow() == S_OK ? module.DllCanUnloadNow() : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, LPVOID* object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (SUCCEEDED(PrxDllGetClassObject(classId, iid, object)))
        return S_OK;
    return module.DllGetClassObject(classId, iid, object);
}

STDAPI DllRegisterServer()
{
    return RegisterLibrary(module);
}

STDAPI DllUnregisterServer()
{
    return UnregisterLibrary(module);
}

// The command line "user" makes this and every later registration in the process one for the user alone.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine)
{
    if (commandLine && ::_wcsicmp(commandLine, L"user") == 0)
        module.RegisterForUser();
    if (!install)
        return UnregisterLibrary(module);
    const HRESULT registered = RegisterLibrary(module);
    if (FAILED(registered))
        UnregisterLibrary(module);    // leave no half of it; what failed first is what counts
    return registered;
}
