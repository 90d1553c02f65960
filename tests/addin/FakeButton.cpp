#include "tests/addin/FakeButton.h"

#include <oleauto.h>
#include <olectl.h>

#include <memory>
#include <type_traits>

using Microsoft::WRL::ComPtr;

STDMETHODIMP FakeConnectionPoint::GetConnectionInterface(IID* interfaceId)
{
    *interfaceId = __uuidof(_CommandBarButtonEvents);
    return S_OK;
}

STDMETHODIMP FakeConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container)
{
    *container = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP FakeConnectionPoint::Advise(IUnknown* sink, DWORD* cookie)
{
    *cookie = 0;
    if (const HRESULT result = Note("Advise()").result; FAILED(result))
        return result;
    // As a host does, which knows its events by their own interface.
    ComPtr<IDispatch> events;
    if (FAILED(sink->QueryInterface(__uuidof(_CommandBarButtonEvents),
                                    reinterpret_cast<void**>(events.ReleaseAndGetAddressOf()))))
        return CONNECT_E_CANNOTCONNECT;
    *cookie = ++lastCookie;
    sinks[*cookie] = events;
    return S_OK;
}

STDMETHODIMP FakeConnectionPoint::Unadvise(DWORD cookie)
{
    if (const HRESULT result = Note("Unadvise()").result; FAILED(result))
        return result;
    return sinks.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
}

STDMETHODIMP FakeConnectionPoint::EnumConnections(IEnumConnections** connections)
{
    *connections = nullptr;
    return E_NOTIMPL;
}

FakeButton::FakeButton(OfficeLog& log, const std::string& name)
    : FakeObject(log, name),
      events(new FakeConnectionPoint(log, name))
{
}

STDMETHODIMP FakeButton::PasteFace()
{
    if (const HRESULT result = Note("PasteFace()").result; FAILED(result))
        return result;
    face = ReadClipboardBitmap();
    return face.empty() ? E_FAIL : S_OK;
}

STDMETHODIMP FakeButton::EnumConnectionPoints(IEnumConnectionPoints** points)
{
    *points = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP FakeButton::FindConnectionPoint(REFIID eventsId, IConnectionPoint** point)
{
    if (eventsId == __uuidof(_CommandBarButtonEvents))
        return Give("FindConnectionPoint()", point, events);
    *point = nullptr;
    return CONNECT_E_NOCONNECTION;
}

VARIANT_BOOL FakeButton::Click(VARIANT_BOOL cancelDefault)
{
    VARIANT arguments[2]{};
    arguments[0].vt = VT_BYREF | VT_BOOL;
    arguments[0].pboolVal = &cancelDefault;
    arguments[1].vt = VT_DISPATCH;
    arguments[1].pdispVal = static_cast<_CommandBarButton*>(this);
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    const auto now = events->sinks;
    for (const auto& [cookie, sink] : now)
        sink->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                     nullptr);
    return cancelDefault;
}

void* FakeButton::Find(REFIID interfaceId)
{
    if (interfaceId == IID_IConnectionPointContainer)
        return static_cast<IConnectionPointContainer*>(this);
    return FakeObject::Find(interfaceId);
}

namespace
{
struct OpenedClipboard
{
    const BOOL opened = ::OpenClipboard(nullptr);
    ~OpenedClipboard()
    {
        if (opened)
            ::CloseClipboard();
    }
};

struct ContextDeleter
{
    void operator()(HDC context) const noexcept { ::DeleteDC(context); }
};
}    // namespace

FakeButton::Bits ReadClipboardBitmap()
{
    const OpenedClipboard clipboard;
    const auto bitmap = static_cast<HBITMAP>(::GetClipboardData(CF_BITMAP));
    BITMAP size{};
    if (!bitmap || !::GetObjectW(bitmap, sizeof size, &size))
        return {};

    const std::unique_ptr<std::remove_pointer_t<HDC>, ContextDeleter> context(::CreateCompatibleDC(nullptr));
    const HGDIOBJ before = ::SelectObject(context.get(), bitmap);
    FakeButton::Bits bits;
    for (int y = 0; y < size.bmHeight; ++y)
        for (int x = 0; x < size.bmWidth; ++x)
            bits.push_back(::GetPixel(context.get(), x, y));
    ::SelectObject(context.get(), before);
    return bits;
}
