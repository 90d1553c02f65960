#pragma once

#include "win/ComObjectRoot.h"
#include "win/ConnectionPoint.h"
#include "win/EventCall.h"
#include "win/EventSink.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <new>

// One line of a class's sink map: which event, received by which of its sinks, is answered by which handler.
struct EventSinkEntry
{
    UINT sinkId;
    const IID* eventInterface;
    DISPID id;
    void* handler;                    // EventHandlerOf<...>::Address()
    const EventFunctionInfo* info;    // null: asked of the sink (GetFuncInfoFromId)
};

// Sink number `sinkNumber` of the COM class T for the dispinterface `eventInterface`. T supplies
//   static std::span<const EventSinkEntry> GetSinkMap() noexcept
// An event without a line there is taken and answered by S_OK.
template <UINT sinkNumber, class T, const IID* eventInterface>
class IDispEventSimpleImpl : private EventReceiver
{
public:
    // Connects to the events of `source`. E_FAIL while connected, else what the source says.
    HRESULT DispEventAdvise(IUnknown* source) noexcept
    {
        if (eventCookie != notAdvised)
            return E_FAIL;
        if (!sink)
            *sink.GetAddressOf() = new (std::nothrow) CEventSink(this, *eventInterface);
        return sink ? AtlAdvise(source, sink.Get(), *eventInterface, &eventCookie) : E_OUTOFMEMORY;
    }

    // Ends the connection; whatever the source says, another one may be made after it.
    HRESULT DispEventUnadvise(IUnknown* source) noexcept
    {
        const HRESULT result = AtlUnadvise(source, *eventInterface, eventCookie);
        eventCookie = notAdvised;
        return result;
    }

    DWORD GetEventCookie() const noexcept { return eventCookie; }

    static constexpr DWORD notAdvised = 0xFEFEFEFE;

protected:
    ~IDispEventSimpleImpl()
    {
        if (sink)
            sink->Detach();
    }

    // The shape of an event whose line in the map does not say it. A simple sink has no description to ask.
    virtual HRESULT GetFuncInfoFromId(const IID&, DISPID, LCID, EventFunctionInfo&) noexcept
    {
        return E_NOTIMPL;
    }

private:
    IUnknown* GetEventOwner() noexcept override { return UnknownOf(static_cast<T*>(this)); }

    HRESULT ReceiveEvent(DISPID id, LCID locale, DISPPARAMS* arguments, VARIANT* result) noexcept override
    {
        for (const EventSinkEntry& entry : T::GetSinkMap())
            if (entry.sinkId == sinkNumber && entry.id == id && *entry.eventInterface == *eventInterface)
                return Handle(entry, locale, arguments, result);
        return S_OK;
    }

    HRESULT Handle(const EventSinkEntry& entry, LCID locale, DISPPARAMS* arguments, VARIANT* result) noexcept
    {
        EventFunctionInfo asked;
        if (!entry.info && FAILED(GetFuncInfoFromId(*eventInterface, entry.id, locale, asked)))
            return S_OK;
        return CallEventHandler(static_cast<T*>(this), entry.handler, entry.info ? *entry.info : asked,
                                arguments, result);
    }

    Microsoft::WRL::ComPtr<CEventSink> sink;
    DWORD eventCookie = notAdvised;
};
