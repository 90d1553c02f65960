#pragma once

#include "win/OleException.h"
#include "win/Variant.h"

#include <windows.h>

#include <comutil.h>
#include <wrl/client.h>

#include <concepts>
#include <span>
#include <string>
#include <utility>

// Owns one IDispatch reference and calls it late-bound, by fixed dispatch ids. Copies share the object.
// A refused call throws: COleDispatchException when the object gave exception information, COleException with
// the HRESULT otherwise. A call on an empty driver throws COleException(E_POINTER).
class COleDispatchDriver
{
public:
    COleDispatchDriver() noexcept = default;
    explicit COleDispatchDriver(Microsoft::WRL::ComPtr<IDispatch> object) noexcept : object(std::move(object))
    {
    }

    // Replaces what is held by a new object of that class; false, holding nothing, when it cannot be made.
    bool CreateDispatch(const wchar_t* progId) noexcept;
    void ReleaseDispatch() noexcept { object.Reset(); }

    IDispatch* GetDispatch() const noexcept { return object.Get(); }    // borrowed
    explicit operator bool() const noexcept { return object.Get() != nullptr; }

protected:
    // Each makes exactly one IDispatch::Invoke. Arguments go in the order given, with the types that they
    // have; the result is coerced to Result's variant type: LONG (VT_I4), DATE, bool, std::wstring (VT_BSTR),
    // _variant_t (as it comes), a driver (VT_DISPATCH), or void for no result.
    template <typename Result, typename... Arguments>
    Result CallMethod(DISPID id, const Arguments&... arguments) const;
    template <typename Result, typename... Arguments>
    Result GetProperty(DISPID id, const Arguments&... arguments) const;
    void PutProperty(DISPID id, const VARIANT& value) const;

private:
    template <typename Result, typename... Arguments>
    Result CallAs(DISPID id, WORD kind, const Arguments&... arguments) const;
    _variant_t Invoke(DISPID id, WORD kind, VARTYPE resultType, std::span<VARIANT> arguments) const;

    Microsoft::WRL::ComPtr<IDispatch> object;
};

// How a call's result of a C++ type is asked for and taken out of its variant.
template <typename Result>
struct DispatchResult;

template <>
struct DispatchResult<void>
{
    static constexpr VARTYPE type = VT_EMPTY;
    static void Take(_variant_t&&) {}
};

template <>
struct DispatchResult<LONG>
{
    static constexpr VARTYPE type = VT_I4;
    static LONG Take(_variant_t&& result) { return result.lVal; }
};

template <>
struct DispatchResult<DATE>
{
    static constexpr VARTYPE type = VT_DATE;
    static DATE Take(_variant_t&& result) { return result.date; }
};

template <>
struct DispatchResult<bool>
{
    static constexpr VARTYPE type = VT_BOOL;
    static bool Take(_variant_t&& result) { return result.boolVal != VARIANT_FALSE; }
};

template <>
struct DispatchResult<std::wstring>
{
    static constexpr VARTYPE type = VT_BSTR;
    static std::wstring Take(_variant_t&& result);    // COleException(E_FAIL) when no string can be had
};

template <>
struct DispatchResult<_variant_t>
{
    static constexpr VARTYPE type = VT_VARIANT;
    // By exchange, not by copy: a row's array is not made twice.
    static _variant_t Take(_variant_t&& result)
    {
        _variant_t taken;
        std::swap(static_cast<VARIANT&>(taken), static_cast<VARIANT&>(result));
        return taken;
    }
};

template <std::derived_from<COleDispatchDriver> Driver>
struct DispatchResult<Driver>
{
    static constexpr VARTYPE type = VT_DISPATCH;
    static Driver Take(_variant_t&& result)
    {
        return Driver(Microsoft::WRL::ComPtr<IDispatch>(result.pdispVal));
    }
};

template <typename Result, typename... Arguments>
Result COleDispatchDriver::CallMethod(DISPID id, const Arguments&... arguments) const
{
    return CallAs<Result>(id, DISPATCH_METHOD, arguments...);
}

template <typename Result, typename... Arguments>
Result COleDispatchDriver::GetProperty(DISPID id, const Arguments&... arguments) const
{
    return CallAs<Result>(id, DISPATCH_PROPERTYGET, arguments...);
}

template <typename Result, typename... Arguments>
Result COleDispatchDriver::CallAs(DISPID id, WORD kind, const Arguments&... arguments) const
{
    // Plain copies that own nothing: the caller's variants outlive the call. One spare, as no array is empty.
    VARIANT borrowed[sizeof...(Arguments) + 1] = {static_cast<const VARIANT&>(arguments)...};
    return DispatchResult<Result>::Take(
        Invoke(id, kind, DispatchResult<Result>::type, std::span(borrowed, sizeof...(Arguments))));
}
