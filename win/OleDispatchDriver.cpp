#include "win/OleDispatchDriver.h"

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <new>

namespace
{
// Owns the texts of an EXCEPINFO.
class ExceptionInfo
{
public:
    ExceptionInfo() noexcept = default;
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;

    ~ExceptionInfo()
    {
        ::SysFreeString(info.bstrSource);
        ::SysFreeString(info.bstrDescription);
        ::SysFreeString(info.bstrHelpFile);
    }

    EXCEPINFO* put() noexcept { return &info; }

    [[noreturn]] void Throw()
    {
        // The object may have put off naming its texts until somebody wants them.
        if (info.pfnDeferredFillIn)
            info.pfnDeferredFillIn(&info);
        const HRESULT code = FAILED(info.scode) ? info.scode : DISP_E_EXCEPTION;
        throw COleDispatchException(code, info.wCode, TextOf(info.bstrDescription), TextOf(info.bstrSource));
    }

private:
    EXCEPINFO info{};
};
}    // namespace

std::wstring DispatchResult<std::wstring>::Take(_variant_t&& result)
{
    try
    {
        return TextOf(result.bstrVal);
    }
    catch (const std::bad_alloc&)
    {
        throw COleException(E_FAIL);
    }
}

bool COleDispatchDriver::CreateDispatch(const wchar_t* progId) noexcept
{
    object.Reset();
    CLSID classId{};
    return SUCCEEDED(::CLSIDFromProgID(progId, &classId)) &&
           SUCCEEDED(::CoCreateInstance(classId, nullptr, CLSCTX_ALL, IID_PPV_ARGS(object.GetAddressOf())));
}

void COleDispatchDriver::PutProperty(DISPID id, const VARIANT& value) const
{
    VARIANT borrowed[] = {value};
    Invoke(id, DISPATCH_PROPERTYPUT, VT_EMPTY, borrowed);
}

_variant_t COleDispatchDriver::Invoke(DISPID id, WORD kind, VARTYPE resultType,
                                      std::span<VARIANT> arguments) const
{
    if (!object)
        throw COleException(E_POINTER);

    // DISPPARAMS holds the arguments last one first.
    std::ranges::reverse(arguments);
    DISPID putValue = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (kind == DISPATCH_PROPERTYPUT)
    {
        parameters.rgdispidNamedArgs = &putValue;
        parameters.cNamedArgs = 1;
    }

    _variant_t result;
    ExceptionInfo exception;
    UINT badArgument = 0;
    const HRESULT called =
        object->Invoke(id, IID_NULL, 0, kind, &parameters, resultType == VT_EMPTY ? nullptr : &result,
                       exception.put(), &badArgument);
    if (called == DISP_E_EXCEPTION)
        exception.Throw();
    if (FAILED(called))
        throw COleException(called);

    if (resultType != VT_EMPTY && resultType != VT_VARIANT && result.vt != resultType)
        if (const HRESULT coerced = ::VariantChangeType(&result, &result, 0, resultType); FAILED(coerced))
            throw COleException(coerced);
    return result;
}
