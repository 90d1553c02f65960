#pragma once

#include "quorvex/DispatchArguments.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <atomic>
#include <span>
#include <utility>

using Microsoft::WRL::ComPtr;

class CDispatchObject;

// One row of a class's table: by which id and in which way an operation is invoked, how many arguments it
// takes, and what runs. Made by Get, Put and Method below from a member function whose signature gives the
// types.
struct Operation
{
    DISPID id;
    WORD kind;    // DISPATCH_METHOD, DISPATCH_PROPERTYGET or DISPATCH_PROPERTYPUT
    UINT argumentCount;
    void (*call)(CDispatchObject& object, const DISPPARAMS& parameters, VARIANT* result);
};

// Base of every automation object of this server: reference counted, counted by the module, callable on any
// thread, late-bound by dispatch id alone. A failing operation fills EXCEPINFO, or, where the caller wants
// none, returns its HRESULT and leaves an IErrorInfo. Every call prepares MAPI for its thread.
class CDispatchObject : public IDispatch, public ISupportErrorInfo
{
public:
    CDispatchObject(const CDispatchObject&) = delete;
    CDispatchObject& operator=(const CDispatchObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override;
    STDMETHODIMP_(ULONG) Release() noexcept override;

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) noexcept override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, OLECHAR** names, UINT count, LCID locale,
                               DISPID* ids) noexcept override;
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) noexcept override;

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

protected:
    CDispatchObject() noexcept;    // with one reference, the maker's
    virtual ~CDispatchObject();

    virtual std::span<const Operation> Operations() const noexcept = 0;

    // A further interface that the class answers, borrowed; null when there is none.
    virtual IUnknown* FindInterface(REFIID) noexcept { return nullptr; }

private:
    std::atomic<ULONG> references = 1;
};

// Makes an object of this server, owned by what is returned.
template <class T, class... Arguments>
ComPtr<T> MakeObject(Arguments&&... arguments)
{
    ComPtr<T> object;
    // Not by Attach: mingw's adds a reference.
    *object.GetAddressOf() = new T(std::forward<Arguments>(arguments)...);
    return object;
}

namespace dispatchdetail
{
template <auto Member>
struct Binding;

template <class Class, class Result, class... Arguments, Result (Class::*Member)(Arguments...)>
struct Binding<Member>
{
    static constexpr UINT argumentCount = sizeof...(Arguments);

    static void Call(CDispatchObject& object, const DISPPARAMS& parameters, VARIANT* result)
    {
        CallWith(static_cast<Class&>(object), parameters, result, std::index_sequence_for<Arguments...>());
    }

private:
    template <std::size_t... Index>
    static void CallWith(Class& object, [[maybe_unused]] const DISPPARAMS& parameters, VARIANT* result,
                         std::index_sequence<Index...>)
    {
        // DISPPARAMS holds the arguments last first.
        std::tuple<DispatchArgument<std::remove_cvref_t<Arguments>>...> arguments{
            ArgumentPlace{parameters, static_cast<UINT>(sizeof...(Arguments) - 1 - Index)}...};
        if constexpr (std::is_void_v<Result>)
            (object.*Member)(std::get<Index>(arguments).Get()...);
        else
        {
            _variant_t value = ToVariant((object.*Member)(std::get<Index>(arguments).Get()...));
            if (result)
                *result = value.Detach();
        }
    }
};
}    // namespace dispatchdetail

// Table rows. A member function's parameters may be long (VT_I4), bool (VT_BOOL), DATE (VT_DATE),
// std::wstring (VT_BSTR), IDispatch* (VT_DISPATCH) and VARIANT (VT_VARIANT, by reference looked through),
// values or const references; what it returns may be these, a ComPtr (VT_DISPATCH), _variant_t or nothing.
template <auto Member>
constexpr Operation Get(DISPID id) noexcept
{
    using Binding = dispatchdetail::Binding<Member>;
    return {id, DISPATCH_PROPERTYGET, Binding::argumentCount, Binding::Call};
}

template <auto Member>
constexpr Operation Put(DISPID id) noexcept
{
    using Binding = dispatchdetail::Binding<Member>;
    static_assert(Binding::argumentCount == 1, "a put takes the value it sets");
    return {id, DISPATCH_PROPERTYPUT, Binding::argumentCount, Binding::Call};
}

template <auto Member>
constexpr Operation Method(DISPID id) noexcept
{
    using Binding = dispatchdetail::Binding<Member>;
    return {id, DISPATCH_METHOD, Binding::argumentCount, Binding::Call};
}
