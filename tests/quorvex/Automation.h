#pragma once

#include <windows.h>

#include <comutil.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Late-bound calls the way a client makes them.
namespace automation
{
using Microsoft::WRL::ComPtr;

struct Outcome
{
    HRESULT result = S_OK;
    _variant_t value;
    HRESULT code = S_OK;    // EXCEPINFO's
    std::wstring description;
    std::wstring source;
    UINT badArgument = 99;
};

inline std::wstring TakeText(BSTR text)
{
    const _bstr_t owner(text, false);
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

// Arguments in the order in which they are listed; a put's value goes by name.
inline Outcome Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<_variant_t> arguments = {})
{
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF))
    {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    Outcome outcome;
    outcome.result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &outcome.value,
                                    &exception, &outcome.badArgument);
    outcome.code = exception.scode;
    outcome.description = TakeText(exception.bstrDescription);
    outcome.source = TakeText(exception.bstrSource);
    TakeText(exception.bstrHelpFile);
    return outcome;
}

inline _variant_t Expect(Outcome outcome)
{
    EXPECT_EQ(outcome.result, S_OK) << std::string(outcome.description.begin(), outcome.description.end());
    return std::move(outcome.value);
}

inline _variant_t Get(IDispatch* object, DISPID id, std::vector<_variant_t> arguments = {})
{
    return Expect(Invoke(object, id, DISPATCH_PROPERTYGET, std::move(arguments)));
}

inline _variant_t Call(IDispatch* object, DISPID id, std::vector<_variant_t> arguments = {})
{
    return Expect(Invoke(object, id, DISPATCH_METHOD, std::move(arguments)));
}

inline void Put(IDispatch* object, DISPID id, _variant_t value)
{
    Expect(Invoke(object, id, DISPATCH_PROPERTYPUT, {std::move(value)}));
}

inline std::wstring TextOf(const _variant_t& value)
{
    EXPECT_EQ(value.vt, VT_BSTR);
    if (value.vt != VT_BSTR || !value.bstrVal)
        return {};
    return {value.bstrVal, SysStringLen(value.bstrVal)};
}

inline long LongOf(const _variant_t& value)
{
    EXPECT_EQ(value.vt, VT_I4);
    return value.vt == VT_I4 ? value.lVal : -1;
}

inline ComPtr<IDispatch> ObjectOf(const _variant_t& value)
{
    EXPECT_EQ(value.vt, VT_DISPATCH);
    return value.vt == VT_DISPATCH ? ComPtr<IDispatch>(value.pdispVal) : nullptr;
}

inline _variant_t Missing()
{
    return _variant_t(static_cast<long>(DISP_E_PARAMNOTFOUND), VT_ERROR);
}
}    // namespace automation
