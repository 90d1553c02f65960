#include "quorvex/DispatchArguments.h"

#include "quorvex/MapiError.h"

VARIANT& ArgumentPlace::Value() const
{
    VARIANT& value = parameters.rgvarg[place];
    if (!IsReadable(value))
        throw BadArgument{DISP_E_TYPEMISMATCH, place};
    return value;
}

bool IsReadable(const VARIANT& value) noexcept
{
    if (!(value.vt & VT_BYREF))
        return true;
    if (!value.byref)
        return false;
    // A VARIANT referred to may refer to a value, but not to a further VARIANT.
    const VARIANT* const inner = value.vt == (VT_BYREF | VT_VARIANT) ? value.pvarVal : nullptr;
    return !inner || (inner->vt != (VT_BYREF | VT_VARIANT) && IsReadable(*inner));
}

_variant_t CoerceArgument(ArgumentPlace argument, VARTYPE type)
{
    _variant_t coerced;
    const HRESULT result = VariantChangeType(&coerced, &argument.Value(), 0, type);
    if (FAILED(result))
        throw BadArgument{result, argument.place};
    return coerced;
}

_variant_t TextVariant(std::wstring_view text)
{
    VARIANT value;
    VariantInit(&value);
    value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!value.bstrVal)
        throw MapiError(E_OUTOFMEMORY, L"There is not enough memory for the text.");
    value.vt = VT_BSTR;
    return _variant_t(value, false);    // takes the string over
}

long LongOf(const VARIANT& value)
{
    if (value.vt == VT_I4)
        return value.lVal;
    if (!IsReadable(value))
        throw MapiError(DISP_E_TYPEMISMATCH, L"A number is needed here.");
    _variant_t number;
    const HRESULT result = VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I4);
    if (FAILED(result))
        throw MapiError(result, L"A number is needed here.");
    return number.lVal;
}
