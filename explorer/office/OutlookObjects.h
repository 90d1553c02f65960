#pragma once

#include "explorer/office/CommandBars.h"
#include "explorer/office/ModelObject.h"
#include "explorer/office/RefusedOutlook.h"

#include <windows.h>

#include <wrl/client.h>

// The explorer window as add-ins see it.
class CExplorer final : public ModelObject<RefusedExplorer, _Explorer>
{
public:
    explicit CExplorer(const SharedContext& context);

    STDMETHODIMP get_Application(_Application** value) noexcept override;
    STDMETHODIMP get_Parent(IDispatch** value) noexcept override { return GetApplication(context, value); }
    STDMETHODIMP get_Class(long* value) noexcept override;
    STDMETHODIMP get_CommandBars(_CommandBars** value) noexcept override;
    STDMETHODIMP get_Caption(BSTR* value) noexcept override;
    STDMETHODIMP Close() noexcept override;
    STDMETHODIMP Display() noexcept override;

    CCommandBars& GetBars() noexcept { return *bars.Get(); }

private:
    ~CExplorer() override = default;

    Microsoft::WRL::ComPtr<CCommandBars> bars;
};

// The host as add-ins see it; all other objects of the model hang from it. What add-ins keep of them after
// Close is empty and does no harm.
class CApplication final : public ModelObject<RefusedApplication, _Application>
{
public:
    explicit CApplication(CommandBarsWatcher& watcher);

    STDMETHODIMP get_Application(_Application** value) noexcept override;
    STDMETHODIMP get_Parent(IDispatch** value) noexcept override { return Refuse(value); }
    STDMETHODIMP get_Class(long* value) noexcept override;
    STDMETHODIMP get_Name(BSTR* value) noexcept override;
    STDMETHODIMP get_Version(BSTR* value) noexcept override;
    STDMETHODIMP ActiveExplorer(_Explorer** value) noexcept override;    // null once closed

    CCommandBars& GetBars() noexcept { return explorer->GetBars(); }
    const SharedContext& GetContext() const noexcept { return context; }
    void SetOwner(OwnerNumber owner) noexcept { context->owner = owner; }    // of what is made from now on
    void Close() noexcept;

private:
    ~CApplication() override;

    Microsoft::WRL::ComPtr<CExplorer> explorer;
};
