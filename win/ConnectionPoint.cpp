#include "win/ConnectionPoint.h"

#include <ocidl.h>
#include <wrl/client.h>

namespace
{
using Microsoft::WRL::ComPtr;

HRESULT FindConnectionPoint(IUnknown* source, REFIID eventInterface, ComPtr<IConnectionPoint>& point) noexcept
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
}    // namespace

HRESULT AtlAdvise(IUnknown* source, IUnknown* sink, REFIID eventInterface, DWORD* cookie) noexcept
{
    if (!cookie)
        return E_POINTER;
    ComPtr<IConnectionPoint> point;
    const HRESULT found = FindConnectionPoint(source, eventInterface, point);
    if (FAILED(found))
        return found;
    DWORD given = 0;
    const HRESULT advised = point->Advise(sink, &given);
    if (SUCCEEDED(advised))
        *cookie = given;
    return advised;
}

HRESULT AtlUnadvise(IUnknown* source, REFIID eventInterface, DWORD cookie) noexcept
{
    ComPtr<IConnectionPoint> point;
    const HRESULT found = FindConnectionPoint(source, eventInterface, point);
    return SUCCEEDED(found) ? point->Unadvise(cookie) : found;
}
