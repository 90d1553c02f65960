#include "explorer/office/OutlookObjects.h"

#include "explorer/office/Accessors.h"

#include <windows.h>

#include <string>

using Microsoft::WRL::ComPtr;

namespace
{
// What Outlook's own objects of these kinds answer.
constexpr long applicationClass = 0;
constexpr long explorerClass = 34;
// The last version that has command bars.
constexpr wchar_t version[] = L"12.0.0.0";

SharedContext MakeContext(CommandBarsWatcher& watcher)
{
    auto context = std::make_shared<ModelContext>();
    context->watcher = &watcher;
    return context;
}

HRESULT GetApplicationObject(const SharedContext& context, _Application** value) noexcept
{
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return context->application ? context->application->QueryInterface(IID_PPV_ARGS(value))
                                : CO_E_OBJNOTCONNECTED;
}
}    // namespace

CExplorer::CExplorer(const SharedContext& context)
    : ModelObject(context),
      bars(MakeModelObject<CCommandBars>(context))
{
}

STDMETHODIMP CExplorer::get_Application(_Application** value) noexcept
{
    return GetApplicationObject(context, value);
}

STDMETHODIMP CExplorer::get_Class(long* value) noexcept
{
    return ComBoundary(value, [&] { *value = explorerClass; });
}

STDMETHODIMP CExplorer::get_CommandBars(_CommandBars** value) noexcept
{
    return ComBoundary(value, [&] { bars.CopyTo(value); });
}

STDMETHODIMP CExplorer::get_Caption(BSTR* value) noexcept
{
    if (!context->watcher)
        return Refuse(value), CO_E_OBJNOTCONNECTED;
    wchar_t caption[260] = L"";
    ::GetWindowTextW(context->watcher->GetWindow(), caption, ARRAYSIZE(caption));
    return GetText(caption, value);
}

STDMETHODIMP CExplorer::Close() noexcept
{
    if (!context->watcher)
        return CO_E_OBJNOTCONNECTED;
    return ComBoundary([&] { context->watcher->OnCloseAsked(); });
}

STDMETHODIMP CExplorer::Display() noexcept
{
    if (!context->watcher)
        return CO_E_OBJNOTCONNECTED;
    return ComBoundary([&] { context->watcher->OnDisplay(); });
}

CApplication::CApplication(CommandBarsWatcher& watcher)
    : ModelObject(MakeContext(watcher)),
      explorer(MakeModelObject<CExplorer>(context))
{
    context->application = this;
}

CApplication::~CApplication()
{
    Close();
}

STDMETHODIMP CApplication::get_Application(_Application** value) noexcept
{
    return GetApplicationObject(context, value);
}

STDMETHODIMP CApplication::get_Class(long* value) noexcept
{
    return ComBoundary(value, [&] { *value = applicationClass; });
}

STDMETHODIMP CApplication::get_Name(BSTR* value) noexcept
{
    return GetText(L"Mail Explorer", value);
}

STDMETHODIMP CApplication::get_Version(BSTR* value) noexcept
{
    return GetText(version, value);
}

STDMETHODIMP CApplication::ActiveExplorer(_Explorer** value) noexcept
{
    return ComBoundary(value,
                       [&]
                       {
                           if (context->watcher)
                               explorer.CopyTo(value);
                       });
}

void CApplication::Close() noexcept
{
    context->watcher = nullptr;
    context->application = nullptr;
    explorer->GetBars().Detach();
}
