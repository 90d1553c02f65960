#pragma once

#include "win/ComModule.h"

#include <windows.h>

#include <oaidl.h>

// Whoever handles the events that a sink receives.
class EventReceiver
{
public:
    // Borrowed; a reference of it is held while an event is handled.
    virtual IUnknown* GetEventOwner() noexcept = 0;
    virtual HRESULT ReceiveEvent(DISPID id, LCID locale, DISPPARAMS* arguments, VARIANT* result) noexcept = 0;

protected:
    ~EventReceiver() = default;
};

// What a source of events holds on to: an object of its own, so that the source keeps no reference of the
// receiver, which keeps one of the source. It may outlive the receiver, and does nothing then. Used by one
// thread.
class CEventSink final : private ModuleReference, public IDispatch
{
public:
    // Begins with one reference, the caller's. Both outlive Detach; `eventInterface` the sink.
    CEventSink(EventReceiver* receiver, const IID& eventInterface) noexcept
        : receiver(receiver),
          eventInterface(eventInterface)
    {
    }
    CEventSink(const CEventSink&) = delete;
    CEventSink& operator=(const CEventSink&) = delete;

    void Detach() noexcept { receiver = nullptr; }    // the receiver goes

    STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override;
    STDMETHODIMP_(ULONG) Release() noexcept override;

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) noexcept override;
    STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept override;

private:
    ~CEventSink() = default;

    EventReceiver* receiver;
    const IID& eventInterface;
    ULONG references = 1;
};
