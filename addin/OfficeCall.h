#pragma once

#include <windows.h>

#include <comdef.h>
#include <wrl/client.h>

#include <utility>

// Calls of the host's objects by their own slots. A failure is thrown as `_com_error`.

// Throws what a failed call of one of `object`'s interfaces comes to, with the error information that the
// object left if it leaves any for that interface.
[[noreturn]] void ThrowOfficeError(HRESULT result, IUnknown& object, REFIID interfaceId);

namespace officecall
{
template <typename Interface, typename Object>
Interface& As(const Microsoft::WRL::ComPtr<Object>& object)
{
    if (!object)
        throw _com_error(E_POINTER);
    return *object.Get();
}
}    // namespace officecall

// Call(button, &_CommandBarButton::put_Style, msoButtonIcon).
template <typename Object, typename Interface, typename... Parameters, typename... Arguments>
void Call(const Microsoft::WRL::ComPtr<Object>& object,
          HRESULT (STDMETHODCALLTYPE Interface::*function)(Parameters...), Arguments&&... arguments)
{
    Interface& target = officecall::As<Interface>(object);
    const HRESULT result = (target.*function)(std::forward<Arguments>(arguments)...);
    if (FAILED(result))
        ThrowOfficeError(result, target, __uuidof(Interface));
}

// The object that a function of `object` gives out through its last parameter:
// Fetch<CommandBar>(bars, &_CommandBars::get_ActiveMenuBar). Null only when the function gave none.
template <typename Result, typename Object, typename Function, typename... Arguments>
Microsoft::WRL::ComPtr<Result> Fetch(const Microsoft::WRL::ComPtr<Object>& object, Function function,
                                     Arguments&&... arguments)
{
    Microsoft::WRL::ComPtr<Result> fetched;
    Call(object, function, std::forward<Arguments>(arguments)..., fetched.ReleaseAndGetAddressOf());
    return fetched;
}

// Another interface of the same object; it has to have that one.
template <typename Result, typename Object>
Microsoft::WRL::ComPtr<Result> Query(const Microsoft::WRL::ComPtr<Object>& object)
{
    IUnknown& target = officecall::As<IUnknown>(object);
    Microsoft::WRL::ComPtr<Result> queried;
    const HRESULT result = target.QueryInterface(__uuidof(Result), &queried);
    if (FAILED(result))
        throw _com_error(result);
    return queried;
}
