#pragma once

#include "win/ClassObjects.h"
#include "win/ComModule.h"
#include "win/ModuleRegistration.h"

#include <windows.h>

// The module object of an in-process server: what its exports do. T supplies
//   static ModuleRegistration GetRegistration() noexcept
// Any thread may ask for class objects; registration is one thread's.
template <class T>
class CAtlDllModuleT
{
public:
    CAtlDllModuleT() = default;
    CAtlDllModuleT(const CAtlDllModuleT&) = delete;
    CAtlDllModuleT& operator=(const CAtlDllModuleT&) = delete;

    HRESULT DllCanUnloadNow() const noexcept { return ComModule::GetLockCount() == 0 ? S_OK : S_FALSE; }

    // CLASS_E_CLASSNOTAVAILABLE for a class that is not in the object map.
    HRESULT DllGetClassObject(REFCLSID classId, REFIID iid, void** result) noexcept
    {
        return classObjects.Get(T::GetRegistration().objects, classId, iid, result);
    }

    HRESULT DllRegisterServer() const noexcept { return RegisterModule(T::GetRegistration(), scope); }
    HRESULT DllUnregisterServer() const noexcept { return UnregisterModule(T::GetRegistration(), scope); }

    // From now on registration is for the user alone.
    void RegisterForUser() noexcept { scope = RegistrationScope::User; }
    RegistrationScope GetRegistrationScope() const noexcept { return scope; }

private:
    ClassObjects classObjects;
    RegistrationScope scope = RegistrationScope::Machine;
};
