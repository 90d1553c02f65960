#pragma once

#include "win/ComBoundary.h"

#include <windows.h>

#include <oaidl.h>

// What an event's function looks like to automation.
struct EventFunctionInfo
{
    static constexpr SHORT mostParameters = 8;

    CALLCONV convention = CC_STDCALL;
    VARTYPE result = VT_EMPTY;
    SHORT parameterCount = 0;
    VARTYPE parameters[mostParameters] = {};
};

// One call of an event's handler on its way through automation.
struct EventCall
{
    void* receiver;    // a pointer to the handler's class
    HRESULT outcome;
};

// A handler as automation calls it: EventHandlerOf<&CFoo::OnClick>::Call. The member takes its parameters as
// the function info names them (VT_DISPATCH as IDispatch*) and may throw: that becomes the call's outcome.
template <auto Member>
struct EventHandlerOf;
template <class T, class... Arguments, void (T::*Member)(Arguments...)>
struct EventHandlerOf<Member>
{
    static void STDMETHODCALLTYPE Call(EventCall* call, Arguments... arguments) noexcept
    {
        call->outcome = ComBoundary([&] { (static_cast<T*>(call->receiver)->*Member)(arguments...); });
    }
    static void* Address() noexcept { return reinterpret_cast<void*>(&Call); }
};

// Calls the handler at `address` with an event's arguments, converted to the types of `info`. A failure of
// the handler, DISP_E_BADPARAMCOUNT, DISP_E_NONAMEDARGS, DISP_E_TYPEMISMATCH where an argument cannot be
// converted.
HRESULT CallEventHandler(void* receiver, void* address, const EventFunctionInfo& info, DISPPARAMS* arguments,
                         VARIANT* result) noexcept;
