#pragma once

#include "win/AtlDllModule.h"

// The library as a COM server: one class, with the application id its own.
class CTalmoreQuorvexOutlookDuplicateRemoverModule
    : public CAtlDllModuleT<CTalmoreQuorvexOutlookDuplicateRemoverModule>
{
public:
    static ModuleRegistration GetRegistration() noexcept;
};
