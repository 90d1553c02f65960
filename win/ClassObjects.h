#pragma once

#include "win/ComClassFactory.h"
#include "win/ModuleRegistration.h"

#include <windows.h>

#include <wrl/client.h>

#include <mutex>
#include <span>
#include <utility>
#include <vector>

// The class objects of a module, each made when it is first asked for and kept. Any thread.
class ClassObjects
{
public:
    // Gives out the interface `iid` of a class's class object, the caller's to release.
    // CLASS_E_CLASSNOTAVAILABLE when `objects` has no such class.
    HRESULT Get(std::span<const ObjectEntry> objects, REFCLSID classId, REFIID iid, void** result) noexcept;

private:
    CComClassFactory* Find(const ObjectEntry& object);

    std::mutex mutex;
    std::vector<std::pair<const ObjectEntry*, Microsoft::WRL::ComPtr<CComClassFactory>>>
        made;    // under the mutex
};
