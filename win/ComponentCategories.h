#pragma once

#include "win/RegistrationScope.h"

#include <windows.h>

#include <comcat.h>

#include <span>

// A category of components that a class belongs to (implemented) or expects of whoever uses it (required).
struct ComponentCategory
{
    const CATID* id;
    bool implemented;
};

// Registers a class's categories below its class id.
HRESULT RegisterCategories(const CLSID& classId, std::span<const ComponentCategory> categories,
                           RegistrationScope scope) noexcept;

// Removes the keys of a class's categories, whichever stand there; none is no failure.
HRESULT RemoveCategoryKeys(const CLSID& classId, RegistrationScope scope) noexcept;
