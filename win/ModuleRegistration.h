#pragma once

#include "win/ComClassFactory.h"
#include "win/ComponentCategories.h"
#include "win/RegistrationScope.h"

#include <windows.h>

#include <span>

// One class of a module's object map.
struct ObjectEntry
{
    const CLSID* classId;
    CreateInstanceFunction create;
    UINT registryScript;
    std::span<const ComponentCategory> categories;
};

// What a module writes into the registry about itself.
struct ModuleRegistration
{
    UINT appIdScript;        // run with %APPID% standing for the application id
    const wchar_t* appId;    // in braces
    std::span<const ObjectEntry> objects;
};

// Writes it all: the application id, each class with its categories, the type library. Stops at the first
// failure and returns it; what was written until then stays.
HRESULT RegisterModule(const ModuleRegistration& module, RegistrationScope scope) noexcept;

// Removes it all. Goes on after a failure, so that as little as possible is left, and returns the first one.
HRESULT UnregisterModule(const ModuleRegistration& module, RegistrationScope scope) noexcept;
