#include "addin/DuplicateRemover.h"

#include "addin/ExplorerButtons.h"
#include "addin/OfficeCall.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverApp.h"
#include "ui/DuplicateRemoverDlg.h"
#include "win/ComBoundary.h"
#include "win/WindowBoundary.h"

using Microsoft::WRL::ComPtr;

namespace
{
constexpr HRESULT noExplorer = -1;

// A host that refuses to name its explorer has none either.
ComPtr<_Explorer> FindActiveExplorer(_Application& host)
{
    ComPtr<_Explorer> explorer;
    if (FAILED(host.ActiveExplorer(explorer.ReleaseAndGetAddressOf())))
        explorer.Reset();
    return explorer;
}
}    // namespace

std::span<const InterfaceEntry<CDuplicateRemover>> CDuplicateRemover::GetInterfaceMap() noexcept
{
    using Entry = InterfaceEntry<CDuplicateRemover>;
    static constexpr Entry map[] = {
        Entry::By<IDuplicateRemover>(&IID_IDuplicateRemover),
        Entry::By<_IDTExtensibility2>(&IID_IDispatch),
        Entry::By<ISupportErrorInfo>(&IID_ISupportErrorInfo),
        Entry::By<_IDTExtensibility2>(&IID__IDTExtensibility2),
    };
    return map;
}

std::span<const EventSinkEntry> CDuplicateRemover::GetSinkMap() noexcept
{
    static constexpr EventFunctionInfo click{CC_STDCALL, VT_EMPTY, 2, {VT_DISPATCH, VT_BYREF | VT_BOOL}};
    static const EventSinkEntry map[] = {
        {1, &DIID__CommandBarButtonEvents, 1, EventHandlerOf<&CDuplicateRemover::OnClick>::Address(), &click},
        {2, &DIID__CommandBarButtonEvents, 1, EventHandlerOf<&CDuplicateRemover::OnClick>::Address(), &click},
    };
    return map;
}

STDMETHODIMP CDuplicateRemover::InterfaceSupportsErrorInfo(REFIID iid) noexcept
{
    return iid == IID_IDuplicateRemover ? S_OK : S_FALSE;
}

STDMETHODIMP CDuplicateRemover::OnConnection(IDispatch* host, ext_ConnectMode, IDispatch*,
                                             SAFEARRAY**) noexcept
{
    return ComBoundary([&] { return Connect(host); });
}

STDMETHODIMP CDuplicateRemover::OnDisconnection(ext_DisconnectMode, SAFEARRAY**) noexcept
{
    return ComBoundary([this] { return Disconnect(); });
}

STDMETHODIMP CDuplicateRemover::OnAddInsUpdate(SAFEARRAY**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP CDuplicateRemover::OnStartupComplete(SAFEARRAY**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP CDuplicateRemover::OnBeginShutdown(SAFEARRAY**) noexcept
{
    return E_NOTIMPL;
}

HRESULT CDuplicateRemover::Connect(IDispatch* host)
{
    auto& app = TheApp();
    StartMapiHelper(app.mapiHelper, app.exchangeProfile);
    application = Query<_Application>(ComPtr<IDispatch>(host));
    const ComPtr<_Explorer> explorer = FindActiveExplorer(*application.Get());
    if (!explorer)
        return noExplorer;
    ComPtr<_CommandBars> bars;
    const HRESULT result = explorer->get_CommandBars(bars.ReleaseAndGetAddressOf());
    if (FAILED(result))
        return result;
    toolBarButton = AddToolBarButton(bars);
    menuButton = AddMenuButton(bars);
    return AdviseEvents();
}

HRESULT CDuplicateRemover::AdviseEvents()
{
    HRESULT result = ToolBarEvents::DispEventAdvise(toolBarButton.Get());
    if (FAILED(result))
        return result;
    result = MenuEvents::DispEventAdvise(menuButton.Get());
    if (FAILED(result))
    {
        // Without the flag nobody takes the first one back, and the button would keep this object for good.
        ToolBarEvents::DispEventUnadvise(toolBarButton.Get());
        return result;
    }
    eventsAdvised = 1;
    return S_OK;
}

HRESULT CDuplicateRemover::Disconnect()
{
    if (!eventsAdvised)
        return S_OK;
    HRESULT result = ToolBarEvents::DispEventUnadvise(toolBarButton.Get());
    if (FAILED(result))
        return result;
    result = MenuEvents::DispEventUnadvise(menuButton.Get());
    if (FAILED(result))
        return result;
    eventsAdvised = 0;
    StopMapiHelper(TheApp().mapiHelper);
    return S_OK;
}

void CDuplicateRemover::OnClick(IDispatch* control, VARIANT_BOOL*)
{
    WindowBoundary(::GetActiveWindow(),
                   [control]
                   {
                       // Keeps the button for as long as the dialog is open.
                       ComPtr<_CommandBarButton> button;
                       if (control)
                           ComPtr<IDispatch>(control).As(&button);
                       CDuplicateRemoverDlg(TheApp().exchangeProfile != FALSE).DoModal();
                   });
}
