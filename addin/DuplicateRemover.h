#pragma once

#include "addin/TalmoreQuorvexOutlookDuplicateRemover.h"
#include "contracts/Extensibility.h"
#include "contracts/Office.h"
#include "contracts/Outlook.h"
#include "win/ComCoClass.h"
#include "win/ComObjectRoot.h"
#include "win/ComThreadModel.h"
#include "win/DispEventImpl.h"
#include "win/DispatchImpl.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <span>

// The class that the host loads: places the two buttons in the active explorer window, opens the wizard on a
// click of either, and runs the MAPI helper meanwhile. On the host's user-interface thread.
class CDuplicateRemover
    : public CComObjectRootEx<CComSingleThreadModel>,
      public CComCoClass<CDuplicateRemover, &CLSID_DuplicateRemover>,
      public ISupportErrorInfo,
      public IDispatchImpl<IDuplicateRemover, &IID_IDuplicateRemover,
                           &LIBID_TalmoreQuorvexOutlookDuplicateRemoverLib, 1, 0>,
      public IDispatchImpl<_IDTExtensibility2, &IID__IDTExtensibility2, &LIBID_AddInDesignerObjects, 1, 0>,
      public IDispEventSimpleImpl<1, CDuplicateRemover, &DIID__CommandBarButtonEvents>,
      public IDispEventSimpleImpl<2, CDuplicateRemover, &DIID__CommandBarButtonEvents>
{
public:
    // IDispatch is that of _IDTExtensibility2: hosts call it late-bound.
    static std::span<const InterfaceEntry<CDuplicateRemover>> GetInterfaceMap() noexcept;
    static std::span<const EventSinkEntry> GetSinkMap() noexcept;

    // Only the class's own interface has error information.
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

    // -1 when the host has no explorer window, else the HRESULT of what failed; what was made of buttons
    // until then stays in the host. The MAPI helper runs afterwards in any case.
    STDMETHODIMP OnConnection(IDispatch* host, ext_ConnectMode mode, IDispatch* addIn,
                              SAFEARRAY** custom) noexcept override;
    // Only after a connection that succeeded, and once: lets go of the clicks and stops the MAPI helper. When
    // the host does not let go of one, nothing further is done. The buttons are the host's to remove.
    STDMETHODIMP OnDisconnection(ext_DisconnectMode mode, SAFEARRAY** custom) noexcept override;

    // E_NOTIMPL.
    STDMETHODIMP OnAddInsUpdate(SAFEARRAY** custom) noexcept override;
    STDMETHODIMP OnStartupComplete(SAFEARRAY** custom) noexcept override;
    STDMETHODIMP OnBeginShutdown(SAFEARRAY** custom) noexcept override;

private:
    using ToolBarEvents = IDispEventSimpleImpl<1, CDuplicateRemover, &DIID__CommandBarButtonEvents>;
    using MenuEvents = IDispEventSimpleImpl<2, CDuplicateRemover, &DIID__CommandBarButtonEvents>;

    HRESULT Connect(IDispatch* host);
    HRESULT AdviseEvents();
    HRESULT Disconnect();
    void OnClick(IDispatch* control, VARIANT_BOOL* cancelDefault);

    Microsoft::WRL::ComPtr<_CommandBarButton> toolBarButton;
    Microsoft::WRL::ComPtr<_CommandBarButton> menuButton;
    Microsoft::WRL::ComPtr<_Application> application;
    unsigned char eventsAdvised = 0;    // 1 while both buttons' clicks come here
};
