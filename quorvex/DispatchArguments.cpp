#include "quorvex/DispatchArguments.h"

#include "quorvex/MapiError.h"

_variant_t CoerceArgument(ArgumentPlace argument, VARTYPE type)
{
    _variant_t coerced;
    const HRESULT result = VariantChangeType(&coerced, &argument.Value(), 0, type);
    if (FAILED(result))
        throw BadArgument{result, argument.place};
    return coerced;
}

_variant_t TextVariant(const std::wstring& text)
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
    _variant_t number;
    const HRESULT result = VariantChangeType(&number, const_cast<VARIANT*>(&value), 0, VT_I4);
    if (FAILED(result))
        throw MapiError(result, L"A number is needed here.");
    return number.lVal;
}
