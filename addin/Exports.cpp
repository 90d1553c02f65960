#include "addin/ProxyStub.h"
#include "addin/SelfRegistration.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverApp.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverModule.h"
#include "win/ComBoundary.h"

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
    if (PrxDllCanUnloadNow() != S_OK || module.DllCanUnloadNow() != S_OK)
        return S_FALSE;
    // A connection that failed leaves the helper running, and while the library is unloaded it is too late.
    return ComBoundary([] { StopMapiHelper(TheApp().mapiHelper); });
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
