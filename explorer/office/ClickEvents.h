#pragma once

#include "explorer/office/ModelObject.h"

#include "contracts/Office.h"

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <map>

// The connection point of one button: whoever listens to its clicks. It belongs to the button, which says
// when it is gone; a listener that holds the point longer finds it empty.
class CClickEvents final : public IConnectionPoint, private CountedObject
{
public:
    explicit CClickEvents(IConnectionPointContainer* button) noexcept : button(button) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override;

    STDMETHODIMP GetConnectionInterface(IID* iid) noexcept override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override;
    STDMETHODIMP Unadvise(DWORD cookie) noexcept override;
    STDMETHODIMP EnumConnections(IEnumConnections** connections) noexcept override;

    // Tells every listener of a click. True when one of them asks the host to do nothing more about it.
    bool Fire(IDispatch* clicked);
    void Disconnect() noexcept;    // lets every listener go

private:
    using Sink = Microsoft::WRL::ComPtr<IDispatch>;

    ~CClickEvents() = default;

    IConnectionPointContainer* button;    // borrowed; null once the button is gone
    std::map<DWORD, Sink> sinks;
    DWORD lastCookie = 0;
    ULONG references = 0;
};
