#include "quorvex/PropVariant.h"

#include "quorvex/AutomationDate.h"
#include "quorvex/DispatchArguments.h"
#include "quorvex/EntryId.h"
#include "quorvex/SafeArrays.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
std::wstring FromSystemCodePage(std::string_view text)
{
    const int length = static_cast<int>(text.size());
    std::wstring wide(MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::wstring GuidText(const GUID& guid)
{
    wchar_t text[39];
    return StringFromGUID2(guid, text, static_cast<int>(std::size(text))) ? text : L"";
}

// The one of several values that stands at `index`, borrowed.
SPropValue ElementOf(const SPropValue& values, ULONG index)
{
    SPropValue element = {};
    const ULONG type = PROP_TYPE(values.ulPropTag) & ~MV_FLAG;
    element.ulPropTag = CHANGE_PROP_TYPE(values.ulPropTag, type);
    switch (type)
    {
    case PT_SHORT:
        element.Value.i = values.Value.MVi.lpi[index];
        break;
    case PT_LONG:
        element.Value.l = values.Value.MVl.lpl[index];
        break;
    case PT_R4:
        element.Value.flt = values.Value.MVflt.lpflt[index];
        break;
    case PT_DOUBLE:
    case PT_APPTIME:
        element.Value.dbl = values.Value.MVdbl.lpdbl[index];
        break;
    case PT_CURRENCY:
        element.Value.cur = values.Value.MVcur.lpcur[index];
        break;
    case PT_I8:
        element.Value.li = values.Value.MVli.lpli[index];
        break;
    case PT_SYSTIME:
        element.Value.ft = values.Value.MVft.lpft[index];
        break;
    case PT_BINARY:
        element.Value.bin = values.Value.MVbin.lpbin[index];
        break;
    case PT_STRING8:
        element.Value.lpszA = values.Value.MVszA.lppszA[index];
        break;
    case PT_UNICODE:
        element.Value.lpszW = values.Value.MVszW.lppszW[index];
        break;
    case PT_CLSID:
        element.Value.lpguid = &values.Value.MVguid.lpguid[index];
        break;
    default:
        element.ulPropTag = PR_NULL;
    }
    return element;
}

_variant_t SeveralValues(const SPropValue& values)
{
    // Every kind of several values starts with their count.
    const ULONG count = values.Value.MVl.cValues;
    std::vector<_variant_t> elements;
    for (ULONG index = 0; index < count; ++index)
        elements.push_back(ToVariant(ElementOf(values, index)));
    return VariantsAsArray(std::move(elements));
}
}    // namespace

std::wstring TextOf(const SPropValue& value)
{
    if (PROP_TYPE(value.ulPropTag) == PT_UNICODE && value.Value.lpszW)
        return value.Value.lpszW;
    if (PROP_TYPE(value.ulPropTag) == PT_STRING8 && value.Value.lpszA)
        return FromSystemCodePage(value.Value.lpszA);
    return {};
}

_variant_t BinaryVariant(std::span<const std::uint8_t> bytes)
{
    SafeArray array = MakeArray(VT_UI1, bytes.size());
    std::ranges::copy(bytes, static_cast<std::uint8_t*>(array->pvData));
    return ArrayVariant(std::move(array), VT_UI1);
}

_variant_t ToVariant(const SPropValue& value)
{
    if (PROP_TYPE(value.ulPropTag) & MV_FLAG)
        return SeveralValues(value);
    switch (PROP_TYPE(value.ulPropTag))
    {
    case PT_SHORT:
        return _variant_t(value.Value.i, VT_I2);
    case PT_LONG:
        return _variant_t(static_cast<long>(value.Value.l), VT_I4);
    case PT_R4:
        return _variant_t(value.Value.flt);
    case PT_DOUBLE:
        return _variant_t(value.Value.dbl, VT_R8);
    case PT_BOOLEAN:
        return _variant_t(value.Value.b != 0);
    case PT_CURRENCY:
        return _variant_t(value.Value.cur);
    case PT_APPTIME:
        return _variant_t(value.Value.at, VT_DATE);
    case PT_I8:
        return _variant_t(static_cast<__int64>(value.Value.li.QuadPart));
    case PT_SYSTIME:
        return _variant_t(LocalDateFromUtc(value.Value.ft), VT_DATE);
    case PT_UNICODE:
        return TextVariant(value.Value.lpszW ? std::wstring_view(value.Value.lpszW) : std::wstring_view());
    case PT_STRING8:
        return TextVariant(TextOf(value));
    case PT_BINARY:
        return BinaryVariant(BytesOf(value.Value.bin));
    case PT_CLSID:
        return TextVariant(GuidText(*value.Value.lpguid));
    default:
        return {};
    }
}
