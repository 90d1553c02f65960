#pragma once

#include "tests/addin/FakeObject.h"
#include "tests/addin/UnusedOffice.h"

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <map>
#include <string>
#include <vector>

// The connection point of one fake button's events. It keeps the sinks until they are taken back.
class FakeConnectionPoint : public FakeObject<IConnectionPoint, IConnectionPoint>
{
public:
    using FakeObject::FakeObject;

    STDMETHODIMP GetConnectionInterface(IID* interfaceId) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

    std::map<DWORD, Microsoft::WRL::ComPtr<IDispatch>> sinks;    // by cookie

private:
    DWORD lastCookie = 7000;
};

// A button of the fake host. Its face is what the clipboard's bitmap looked like when it was pasted.
class FakeButton
    : public FakeObject<UnusedButton, _CommandBarButton, CommandBarControl, IAccessible, IDispatch>,
      public IConnectionPointContainer
{
public:
    using Bits = std::vector<COLORREF>;    // row by row from the top

    FakeButton(OfficeLog& log, const std::string& name);

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override
    {
        return FakeObject::QueryInterface(interfaceId, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return FakeObject::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return FakeObject::Release(); }

    STDMETHODIMP put_Caption(BSTR value) override { return Put("Caption", value); }
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override { return Put("Enabled", value); }
    STDMETHODIMP put_Visible(VARIANT_BOOL value) override { return Put("Visible", value); }
    STDMETHODIMP put_TooltipText(BSTR value) override { return Put("TooltipText", value); }
    STDMETHODIMP put_Tag(BSTR value) override { return Put("Tag", value); }
    STDMETHODIMP put_Style(MsoButtonStyle value) override { return Put("Style", static_cast<long>(value)); }
    STDMETHODIMP PasteFace() override;

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
    STDMETHODIMP FindConnectionPoint(REFIID eventsId, IConnectionPoint** point) override;

    // Raises Click to every sink; returns what CancelDefault is then (it starts as `cancelDefault`).
    VARIANT_BOOL Click(VARIANT_BOOL cancelDefault = VARIANT_FALSE);

    Microsoft::WRL::ComPtr<FakeConnectionPoint> events;
    Bits face;

protected:
    void* Find(REFIID interfaceId) override;
};

// The bitmap on the clipboard; empty when there is none.
FakeButton::Bits ReadClipboardBitmap();
