#pragma once

#include <windows.h>

#include <comutil.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

// How the arguments of an Invoke become C++ values and results become VARIANTs, with automation's own
// coercions.

// An argument that cannot be had: `code` and the place in DISPPARAMS that it stands in go back to the caller.
struct BadArgument
{
    HRESULT code;
    UINT place;
};

struct ArgumentPlace
{
    const DISPPARAMS& parameters;
    UINT place;

    // Throws BadArgument for a VARIANT that cannot be looked into.
    VARIANT& Value() const;
};

// Whether a VARIANT that refers to something does: callers may leave any of the pointers null.
bool IsReadable(const VARIANT& value) noexcept;

// The argument as one of `type`, converted the way VariantChangeType does; throws BadArgument. `read` takes
// the value out of a VARIANT of that type.
_variant_t CoerceArgument(ArgumentPlace argument, VARTYPE type);

template <class Read>
auto ReadArgument(ArgumentPlace argument, VARTYPE type, Read&& read)
{
    // Most callers bring the right type, which then need not be copied.
    const VARIANT& value = argument.Value();
    return value.vt == type ? read(value) : read(CoerceArgument(argument, type));
}

// The VARIANT itself, or the one that it refers to.
inline const VARIANT& LookThrough(const VARIANT& value) noexcept
{
    return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
}

// Holds one converted argument while the operation runs.
template <class T>
class DispatchArgument;

template <>
class DispatchArgument<long>
{
public:
    DispatchArgument(ArgumentPlace argument)
        : value(ReadArgument(argument, VT_I4, [](const VARIANT& number) { return number.lVal; }))
    {
    }
    long Get() const noexcept { return value; }

private:
    long value;
};

template <>
class DispatchArgument<bool>
{
public:
    DispatchArgument(ArgumentPlace argument)
        : value(ReadArgument(argument, VT_BOOL, [](const VARIANT& choice) { return choice.boolVal; }) !=
                VARIANT_FALSE)
    {
    }
    bool Get() const noexcept { return value; }

private:
    bool value;
};

template <>
class DispatchArgument<DATE>
{
public:
    DispatchArgument(ArgumentPlace argument) : value(CoerceArgument(argument, VT_DATE).date) {}
    DATE Get() const noexcept { return value; }

private:
    DATE value;
};

template <>
class DispatchArgument<std::wstring>
{
public:
    DispatchArgument(ArgumentPlace argument)
    {
        const _variant_t text = CoerceArgument(argument, VT_BSTR);
        value.assign(text.bstrVal ? text.bstrVal : L"", SysStringLen(text.bstrVal));
    }
    const std::wstring& Get() const noexcept { return value; }

private:
    std::wstring value;
};

template <>
class DispatchArgument<IDispatch*>
{
public:
    DispatchArgument(ArgumentPlace argument) : value(CoerceArgument(argument, VT_DISPATCH)) {}
    IDispatch* Get() const noexcept { return value.pdispVal; }

private:
    _variant_t value;
};

template <>
class DispatchArgument<VARIANT>
{
public:
    DispatchArgument(ArgumentPlace argument) : value(LookThrough(argument.Value())) {}
    const VARIANT& Get() const noexcept { return value; }

private:
    const VARIANT& value;    // the caller's
};

_variant_t TextVariant(std::wstring_view text);

inline _variant_t ToVariant(const std::wstring& text)
{
    return TextVariant(text);
}
inline _variant_t ToVariant(long value)
{
    return _variant_t(value, VT_I4);
}
inline _variant_t ToVariant(bool value)
{
    return _variant_t(value);
}
inline _variant_t ToVariant(DATE value)
{
    return _variant_t(value, VT_DATE);
}
inline _variant_t ToVariant(_variant_t&& value)
{
    // By exchange: a copy would copy what the VARIANT holds.
    VARIANT taken = value.Detach();
    return _variant_t(taken, false);
}

template <class T>
_variant_t ToVariant(const Microsoft::WRL::ComPtr<T>& object)
{
    return _variant_t(static_cast<IDispatch*>(object.Get()));
}

// A long out of a VARIANT argument (an index, a tag, a choice); throws MapiError with automation's code.
long LongOf(const VARIANT& value);
