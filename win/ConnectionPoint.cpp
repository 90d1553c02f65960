#include "win/ConnectionPoint.h"

#include "win/ComBoundary.h"

#include <ocidl.h>
#include <wrl/client.h>

namespace
{
using Microsoft::WRL::ComPtr;

HRESULT FindConnectionPoint(IUnknown* source, REFIID eventInterface, ComPtr<IConnectionPoint>& point)
{
    if (!source)
        return E_INVALIDARG;
    ComPtr<IConnectionPointContainer> container;
    const HRESULT asked = source->QueryInterface(IID_IConnectionPointContainer,
                                                 reinterpret_cast<void**>(container.GetAddressOf()));
    if (FAILED(asked))
        return asked;
    const HRESULT found = container->FindConnectionPoint(eventInterface, point.GetAddressOf());
    return SUCCEEDED(found) && !point ? E_POINTER : found;
}

HRESULT Advise(IUnknown* source, IUnknown* sink, REFIID eventInterface, DWORD& cookie)
{
    ComPtr<IConnectionPoint> point;
    const HRESULT found = FindConnectionPoint(source, eventInterface, point);
    if (FAILED(found))
        return found;
    DWORD given = 0;
    const HRESULT advised = point->Advise(sink, &given);
    if (SUCCEEDED(advised))
        cookie = given;
    return advised;
}

HRESULT Unadvise(IUnknown* source, REFIID eventInterface, DWORD cookie)
{
    ComPtr<IConnectionPoint> point;
    const HRESULT found = FindConnectionPoint(source, eventInterface, point);
    return SUCCEEDED(found) ? point->Unadvise(cookie) : found;
}
}    // namespace

// A source that throws must not end the process.
HRESULT AtlAdvise(IUnknown* source, IUnknown* sink, REFIID eventInterface, DWORD* cookie) noexcept
{
    if (!cookie)
        return E_POINTER;
    return ComBoundary([&] { return Advise(source, sink, eventInterface, *cookie); });
}

HRESULT AtlUnadvise(IUnknown* source, REFIID eventInterface, DWORD cookie) noexcept
{
    return ComBoundary([&] { return Unadvise(source, eventInterface, cookie); });
}
