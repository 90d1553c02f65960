#include "addin/SelfRegistration.h"

#include "addin/ProxyStub.h"
#include "win/ClassesRoot.h"

namespace
{
// The proxy goes where the classes go.
template <class Function>
HRESULT BelowClassesRoot(RegistrationScope scope, Function&& function) noexcept
{
    const ClassesRoot root(scope);
    return SUCCEEDED(root.GetResult()) ? function() : root.GetResult();
}

HRESULT RegisterProxy(RegistrationScope scope) noexcept
{
    return BelowClassesRoot(scope, [] { return PrxDllRegisterServer(); });
}

HRESULT UnregisterProxy(RegistrationScope scope) noexcept
{
    return BelowClassesRoot(scope, [] { return PrxDllUnregisterServer(); });
}
}    // namespace

HRESULT RegisterLibrary(const CTalmoreQuorvexOutlookDuplicateRemoverModule& module) noexcept
{
    const HRESULT registered = module.DllRegisterServer();
    return SUCCEEDED(registered) ? RegisterProxy(module.GetRegistrationScope()) : registered;
}

HRESULT UnregisterLibrary(const CTalmoreQuorvexOutlookDuplicateRemoverModule& module) noexcept
{
    HRESULT result = module.DllUnregisterServer();
    // The proxy is registered once more, so that its removal finds all that it removes.
    if (SUCCEEDED(result))
        result = RegisterProxy(module.GetRegistrationScope());
    return SUCCEEDED(result) ? UnregisterProxy(module.GetRegistrationScope()) : result;
}
