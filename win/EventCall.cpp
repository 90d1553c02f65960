#include "win/EventCall.h"

#include <comutil.h>
#include <oleauto.h>

#include <array>

namespace
{
constexpr SHORT mostArguments = EventFunctionInfo::mostParameters + 1;

// An argument as its parameter's type asks for it. Keeps what a conversion made for as long as the call
// lasts.
class EventArgument
{
public:
    HRESULT Convert(VARIANT& given, VARTYPE type) noexcept
    {
        VARIANT* source = &given;
        if (V_VT(source) == (VT_BYREF | VT_VARIANT) && type != (VT_BYREF | VT_VARIANT))
            source = V_VARIANTREF(source);
        if (V_VT(source) == type)
        {
            passed = source;
            return S_OK;
        }
        return type & VT_BYREF ? MakeReference(*source, type) : Change(*source, type);
    }

    VARIANT* Passed() const noexcept { return passed; }

private:
    HRESULT Change(VARIANT& source, VARTYPE type) noexcept
    {
        const HRESULT changed = ::VariantChangeType(&own, &source, 0, type);
        passed = &own;
        return changed;
    }

    // A value given for a parameter by reference: the handler gets the address of a copy. A reference to
    // another type stays a mismatch, since what the handler writes there would be lost.
    HRESULT MakeReference(VARIANT& source, VARTYPE type) noexcept
    {
        if (V_ISBYREF(&source))
            return DISP_E_TYPEMISMATCH;
        const HRESULT changed = Change(source, static_cast<VARTYPE>(type & ~VT_BYREF));
        V_VT(&reference) = type;
        V_BYREF(&reference) = &V_NONE(&own);
        passed = &reference;
        return changed;
    }

    _variant_t own;
    VARIANT reference = {};    // owns nothing
    VARIANT* passed = nullptr;
};

HRESULT CheckShape(const EventFunctionInfo& info, const DISPPARAMS* arguments) noexcept
{
    const UINT given = arguments ? arguments->cArgs : 0;
    if (arguments && arguments->cNamedArgs != 0)
        return DISP_E_NONAMEDARGS;
    return given == static_cast<UINT>(info.parameterCount) && info.parameterCount <= info.mostParameters
               ? S_OK
               : DISP_E_BADPARAMCOUNT;
}
}    // namespace

HRESULT CallEventHandler(void* receiver, void* address, const EventFunctionInfo& info, DISPPARAMS* arguments,
                         VARIANT* result) noexcept
{
    const HRESULT shaped = CheckShape(info, arguments);
    if (FAILED(shaped))
        return shaped;
    EventCall call = {receiver, S_OK};
    VARIANT callArgument = {};
    V_VT(&callArgument) = VT_BYREF | VT_UI1;    // a bare address, as automation sees it
    V_BYREF(&callArgument) = &call;
    std::array<VARTYPE, mostArguments> types = {V_VT(&callArgument)};
    std::array<VARIANT*, mostArguments> passed = {&callArgument};
    std::array<EventArgument, EventFunctionInfo::mostParameters> converted;
    for (SHORT index = 0; index != info.parameterCount; ++index)
    {
        // Automation passes arguments in reverse order.
        VARIANT& given = arguments->rgvarg[info.parameterCount - 1 - index];
        const HRESULT fits = converted[index].Convert(given, info.parameters[index]);
        if (FAILED(fits))
            return fits;
        types[index + 1] = info.parameters[index];
        passed[index + 1] = converted[index].Passed();
    }
    _variant_t unused;
    const HRESULT called = ::DispCallFunc(nullptr, reinterpret_cast<ULONG_PTR>(address), info.convention,
                                          info.result, static_cast<UINT>(info.parameterCount + 1),
                                          types.data(), passed.data(), result ? result : &unused);
    return FAILED(called) ? called : call.outcome;
}
