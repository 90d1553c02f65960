#include "win/Variant.h"

#include <windows.h>

#include <comdef.h>
#include <oleauto.h>

#include <new>

namespace
{
// The one-dimensional array that a variant holds; borrowed, null when it holds none.
SAFEARRAY* ArrayOf(const VARIANT& value)
{
    if ((value.vt & VT_ARRAY) == 0)
        return nullptr;
    SAFEARRAY* array = (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
    return array && ::SafeArrayGetDim(array) == 1 ? array : nullptr;
}
}    // namespace

_variant_t LongVariant(LONG value)
{
    return _variant_t(value, VT_I4);
}

_variant_t BoolVariant(bool value)
{
    return _variant_t(value);
}

_variant_t DateVariant(DATE value)
{
    return _variant_t(value, VT_DATE);
}

_variant_t TextVariant(const std::wstring& value)
{
    _variant_t text;
    text.bstrVal = ::SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    if (!text.bstrVal)
        throw std::bad_alloc();
    text.vt = VT_BSTR;
    return text;
}

_variant_t DispatchVariant(IDispatch* value)
{
    _variant_t object(value, false);
    if (value)
        value->AddRef();
    return object;
}

_variant_t MissingVariant()
{
    _variant_t missing;
    missing.vt = VT_ERROR;
    missing.scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

std::wstring TextOf(BSTR value)
{
    return value ? std::wstring(value, ::SysStringLen(value)) : std::wstring();
}

ULONG ArrayLength(const VARIANT& array)
{
    const SAFEARRAY* elements = ArrayOf(array);
    return elements ? elements->rgsabound[0].cElements : 0;
}

std::optional<std::span<const BYTE>> ArrayBytes(const VARIANT& array)
{
    SAFEARRAY* elements = ArrayOf(array);
    VARTYPE type = VT_EMPTY;
    if (!elements || FAILED(::SafeArrayGetVartype(elements, &type)) || type != VT_UI1)
        return std::nullopt;
    return std::span(static_cast<const BYTE*>(elements->pvData), elements->rgsabound[0].cElements);
}

_variant_t ArrayElement(const VARIANT& array, ULONG index)
{
    _variant_t element;
    SAFEARRAY* elements = ArrayOf(array);
    VARTYPE type = VT_EMPTY;
    if (!elements || index >= elements->rgsabound[0].cElements ||
        FAILED(::SafeArrayGetVartype(elements, &type)))
        return element;

    if (type == VT_UI1)
    {
        element.bVal = static_cast<const BYTE*>(elements->pvData)[index];
        element.vt = VT_UI1;
        return element;
    }
    LONG position = elements->rgsabound[0].lLbound + static_cast<LONG>(index);
    if (type == VT_VARIANT)
        ::SafeArrayGetElement(elements, &position, &element);
    else if (::SafeArrayGetElemsize(elements) <= sizeof(element.llVal) &&
             SUCCEEDED(::SafeArrayGetElement(elements, &position, &element.llVal)))
        element.vt = type;
    return element;
}
