#include "localmapi/PropertyConversion.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/TextConversion.h"

#include <mapicode.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{
void FillError(SPropValue& property, std::uint32_t tag, SCODE error)
{
    property.ulPropTag = CHANGE_PROP_TYPE(tag, PT_ERROR);
    property.Value.err = error;
}

std::uint32_t OwnTypeOf(const StoredValue& value)
{
    if (const auto* const number = std::get_if<std::int64_t>(&value))
        return *number == static_cast<LONG>(*number) ? PT_LONG : PT_I8;
    if (std::holds_alternative<double>(value))
        return PT_DOUBLE;
    return std::holds_alternative<std::string>(value) ? PT_UNICODE : PT_BINARY;
}

bool FillNumber(SPropValue& property, std::int64_t number)
{
    switch (PROP_TYPE(property.ulPropTag))
    {
    case PT_I2:
        property.Value.i = static_cast<short>(number);
        return true;
    case PT_LONG:
        property.Value.l = static_cast<LONG>(number);
        return true;
    case PT_BOOLEAN:
        property.Value.b = number != 0;
        return true;
    case PT_I8:
    case PT_CURRENCY:
        property.Value.li.QuadPart = number;
        return true;
    case PT_SYSTIME:
        property.Value.ft.dwLowDateTime = static_cast<DWORD>(number);
        property.Value.ft.dwHighDateTime = static_cast<DWORD>(static_cast<std::uint64_t>(number) >> 32);
        return true;
    default:
        return false;
    }
}

bool FillReal(SPropValue& property, double real)
{
    switch (PROP_TYPE(property.ulPropTag))
    {
    case PT_R4:
        property.Value.flt = static_cast<float>(real);
        return true;
    case PT_DOUBLE:
    case PT_APPTIME:
        property.Value.dbl = real;
        return true;
    default:
        return false;
    }
}

bool FillText(SPropValue& property, const std::string& text, void* owner)
{
    if (PROP_TYPE(property.ulPropTag) == PT_UNICODE)
    {
        // Straight into the client's buffer: bodies are long, and a folder has many.
        property.Value.lpszW = AllocateMapiArray<wchar_t>(text.size() + 1, owner);
        property.Value.lpszW[WideFromUtf8(text, property.Value.lpszW)] = L'\0';
        return true;
    }
    if (PROP_TYPE(property.ulPropTag) != PT_STRING8)
        return false;
    const std::string ansi = AnsiFromWide(WideFromUtf8(text));
    property.Value.lpszA = AllocateMapiArray<char>(ansi.size() + 1, owner);
    ansi.copy(property.Value.lpszA, ansi.size());
    property.Value.lpszA[ansi.size()] = '\0';
    return true;
}

bool FillBytes(SPropValue& property, const Blob& bytes, void* owner)
{
    const bool isGuid = PROP_TYPE(property.ulPropTag) == PT_CLSID && bytes.size() == sizeof(GUID);
    if (!isGuid && PROP_TYPE(property.ulPropTag) != PT_BINARY)
        return false;
    auto* const copy = AllocateMapiArray<std::uint8_t>(bytes.size(), owner);
    std::copy(bytes.begin(), bytes.end(), copy);
    if (isGuid)
        property.Value.lpguid = reinterpret_cast<GUID*>(copy);
    else
        property.Value.bin = {static_cast<ULONG>(bytes.size()), copy};
    return true;
}

bool FillValue(SPropValue& property, const StoredValue& value, void* owner)
{
    if (const auto* const number = std::get_if<std::int64_t>(&value))
        return FillNumber(property, *number);
    if (const auto* const real = std::get_if<double>(&value))
        return FillReal(property, *real);
    if (const auto* const text = std::get_if<std::string>(&value))
        return FillText(property, *text, owner);
    return FillBytes(property, std::get<Blob>(value), owner);
}

Blob BytesOf(const void* data, std::size_t size)
{
    if (size == 0)
        return {};
    if (!data)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    return Blob(bytes, bytes + size);
}

std::int64_t NumberOf(const FILETIME& time)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(time.dwHighDateTime) << 32 |
                                     time.dwLowDateTime);
}
}    // namespace

std::uint32_t StoredTag(std::uint32_t tag)
{
    return PROP_TYPE(tag) == PT_STRING8 ? CHANGE_PROP_TYPE(tag, PT_UNICODE) : tag;
}

void FillPropValue(SPropValue& property, std::uint32_t tag, const StoredValue& value, void* owner)
{
    property.dwAlignPad = 0;
    if (std::holds_alternative<std::monostate>(value))
    {
        FillError(property, tag, MAPI_E_NOT_FOUND);
        return;
    }
    property.ulPropTag = PROP_TYPE(tag) == PT_UNSPECIFIED ? CHANGE_PROP_TYPE(tag, OwnTypeOf(value)) : tag;
    if (!FillValue(property, value, owner))
        FillError(property, tag, MAPI_E_INVALID_TYPE);
}

StoredValue StoredValueOf(const SPropValue& property)
{
    const auto& value = property.Value;
    switch (PROP_TYPE(property.ulPropTag))
    {
    case PT_NULL:
    case PT_ERROR:
        return std::monostate();
    case PT_I2:
        return std::int64_t{value.i};
    case PT_LONG:
        return std::int64_t{value.l};
    case PT_BOOLEAN:
        return std::int64_t{value.b != 0};
    case PT_I8:
    case PT_CURRENCY:
        return std::int64_t{value.li.QuadPart};
    case PT_SYSTIME:
        return NumberOf(value.ft);
    case PT_R4:
        return double{value.flt};
    case PT_DOUBLE:
    case PT_APPTIME:
        return value.dbl;
    case PT_UNICODE:
        return Utf8FromWide(&Given(value.lpszW));
    case PT_STRING8:
        return Utf8FromWide(WideFromAnsi(&Given(value.lpszA)));
    case PT_BINARY:
        return BytesOf(value.bin.lpb, value.bin.cb);
    case PT_CLSID:
        return BytesOf(value.lpguid, sizeof(GUID));
    default:
        throw MapiError(MAPI_E_TYPE_NO_SUPPORT);
    }
}
