#include "win/ModuleRegistration.h"

#include "win/ComBoundary.h"
#include "win/Registrar.h"
#include "win/TypeLibrary.h"

namespace
{
// Registration writes the same whatever the user's locale, since what it writes is there for others too.
class SystemLocale
{
public:
    SystemLocale() noexcept : own(::GetThreadLocale()) { ::SetThreadLocale(LOCALE_SYSTEM_DEFAULT); }
    SystemLocale(const SystemLocale&) = delete;
    SystemLocale& operator=(const SystemLocale&) = delete;
    ~SystemLocale() { ::SetThreadLocale(own); }

private:
    const LCID own;
};

HRESULT RunAppIdScript(const ModuleRegistration& module, bool write, RegistrationScope scope) noexcept
{
    return ComBoundary(
        [&] {
            return RunRegistryScript(module.appIdScript, write, scope, {{L"APPID", module.appId}});
        });
}

HRESULT RegisterObject(const ObjectEntry& object, RegistrationScope scope) noexcept
{
    const HRESULT written = RunRegistryScript(object.registryScript, true, scope);
    return SUCCEEDED(written) ? RegisterCategories(*object.classId, object.categories, scope) : written;
}

void KeepFirst(HRESULT& first, HRESULT next) noexcept
{
    if (SUCCEEDED(first))
        first = next;
}
}    // namespace

HRESULT RegisterModule(const ModuleRegistration& module, RegistrationScope scope) noexcept
{
    const SystemLocale locale;
    HRESULT result = RunAppIdScript(module, true, scope);
    for (const ObjectEntry& object : module.objects)
        if (SUCCEEDED(result))
            result = RegisterObject(object, scope);
    return SUCCEEDED(result) ? RegisterOwnTypeLibrary(scope) : result;
}

HRESULT UnregisterModule(const ModuleRegistration& module, RegistrationScope scope) noexcept
{
    const SystemLocale locale;
    HRESULT result = S_OK;
    for (const ObjectEntry& object : module.objects)
    {
        KeepFirst(result, RemoveCategoryKeys(*object.classId, scope));
        KeepFirst(result, RunRegistryScript(object.registryScript, false, scope));
    }
    KeepFirst(result, UnregisterOwnTypeLibrary(scope));
    KeepFirst(result, RunAppIdScript(module, false, scope));
    return result;
}
