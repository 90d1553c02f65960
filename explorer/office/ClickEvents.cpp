#include "explorer/office/ClickEvents.h"

#include "explorer/office/Refuse.h"

#include <windows.h>

#include <olectl.h>

#include <utility>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr DISPID click = 1;
}    // namespace

STDMETHODIMP CClickEvents::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    const bool ours = iid == IID_IUnknown || iid == IID_IConnectionPoint;
    *object = ours ? static_cast<IConnectionPoint*>(this) : nullptr;
    if (!ours)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) CClickEvents::Release() noexcept
{
    const ULONG left = --references;
    if (left == 0)
        delete this;
    return left;
}

STDMETHODIMP CClickEvents::GetConnectionInterface(IID* iid) noexcept
{
    return ComBoundary(iid, [&] { *iid = DIID__CommandBarButtonEvents; });
}

STDMETHODIMP CClickEvents::GetConnectionPointContainer(IConnectionPointContainer** container) noexcept
{
    if (!button)
        return Refuse(container), CO_E_OBJNOTCONNECTED;
    return ComBoundary(container, [&] { (*container = button)->AddRef(); });
}

STDMETHODIMP CClickEvents::Advise(IUnknown* sink, DWORD* cookie) noexcept
{
    if (!sink || !cookie)
        return E_POINTER;
    *cookie = 0;
    if (!button)
        return CO_E_OBJNOTCONNECTED;
    Sink listener;
    if (FAILED(sink->QueryInterface(DIID__CommandBarButtonEvents,
                                    reinterpret_cast<void**>(listener.GetAddressOf()))) &&
        FAILED(sink->QueryInterface(IID_PPV_ARGS(&listener))))
        return CONNECT_E_CANNOTCONNECT;
    return ComBoundary(
        [&]
        {
            sinks.emplace(lastCookie + 1, std::move(listener));
            *cookie = ++lastCookie;
        });
}

STDMETHODIMP CClickEvents::Unadvise(DWORD cookie) noexcept
{
    const auto found = sinks.find(cookie);
    if (found == sinks.end())
        return CONNECT_E_NOCONNECTION;
    const Sink leaving = std::move(found->second);
    sinks.erase(found);
    return S_OK;
}

STDMETHODIMP CClickEvents::EnumConnections(IEnumConnections** connections) noexcept
{
    return Refuse(connections);
}

bool CClickEvents::Fire(IDispatch* clicked)
{
    // A listener may come or go while it is called.
    const std::map<DWORD, Sink> called = sinks;
    const ComPtr<IUnknown> alive(this);
    VARIANT_BOOL cancel = VARIANT_FALSE;
    for (const auto& [cookie, sink] : called)
    {
        VARIANTARG arguments[2]{};    // in reverse order
        arguments[0].vt = VT_BYREF | VT_BOOL;
        arguments[0].pboolVal = &cancel;
        arguments[1].vt = VT_DISPATCH;
        arguments[1].pdispVal = clicked;
        DISPPARAMS parameters{arguments, nullptr, ARRAYSIZE(arguments), 0};
        // What a listener fails with is its own affair: the others hear the click all the same.
        (void)sink->Invoke(click, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                           nullptr, nullptr);
    }
    return cancel != VARIANT_FALSE;
}

void CClickEvents::Disconnect() noexcept
{
    button = nullptr;
    const std::map<DWORD, Sink> leaving = std::move(sinks);
    sinks.clear();
}
