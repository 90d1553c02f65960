#include "win/ActivationContext.h"

#include "win/ThisModule.h"

ActivationContext::ActivationContext() noexcept
{
    ACTCTXW source{};
    source.cbSize = sizeof source;
    source.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    source.hModule = ThisModule();
    source.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
    context = ::CreateActCtxW(&source);
    if (context != INVALID_HANDLE_VALUE && !::ActivateActCtx(context, &cookie))
    {
        ::ReleaseActCtx(context);
        context = INVALID_HANDLE_VALUE;
    }
}

ActivationContext::~ActivationContext()
{
    if (context == INVALID_HANDLE_VALUE)
        return;
    ::DeactivateActCtx(0, cookie);
    ::ReleaseActCtx(context);
}
