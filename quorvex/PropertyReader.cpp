#include "quorvex/PropertyReader.h"

#include "quorvex/DispatchArguments.h"
#include "quorvex/MapiError.h"
#include "quorvex/PropVariant.h"

#include <mapicode.h>
#include <mapiguid.h>
#include <objidl.h>
#include <wrl/client.h>

#include <algorithm>
#include <iterator>

namespace
{
using Microsoft::WRL::ComPtr;

std::vector<std::uint8_t> ReadStream(IMAPIProp* object, ULONG tag)
{
    ComPtr<IStream> stream;
    CheckMapi(object->OpenProperty(tag, &IID_IStream, STGM_READ, 0,
                                   reinterpret_cast<IUnknown**>(stream.GetAddressOf())),
              object, L"open a long property");
    std::vector<std::uint8_t> bytes;
    constexpr ULONG step = 1 << 16;
    for (ULONG got = 1; got != 0;)
    {
        const std::size_t start = bytes.size();
        bytes.resize(start + step);
        got = 0;
        CheckMapi(stream->Read(bytes.data() + start, step, &got), L"read a long property");
        bytes.resize(start + got);
    }
    return bytes;
}

std::wstring TextFromStream(IMAPIProp* object, ULONG tag)
{
    const std::vector<std::uint8_t> bytes = ReadStream(object, tag);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.data(), text.size() * sizeof(wchar_t), reinterpret_cast<std::uint8_t*>(text.data()));
    // Some objects end the stream with the terminator that a string in memory has.
    text.resize(std::min(text.find(L'\0'), text.size()));
    return text;
}
}    // namespace

ULONG UnicodeForm(ULONG tag) noexcept
{
    const ULONG type = PROP_TYPE(tag);
    const ULONG unicodeType = PT_UNICODE | (type & MV_FLAG);
    return (type & ~MV_FLAG) == PT_STRING8 ? CHANGE_PROP_TYPE(tag, unicodeType) : tag;
}

bool MeansAbsent(SCODE error) noexcept
{
    return error == MAPI_E_NOT_FOUND || error == MAPI_E_NO_SUPPORT || error == MAPI_E_UNEXPECTED_TYPE;
}

TagArray::TagArray(std::span<const ULONG> tags)
{
    storage.reserve(tags.size() + 1);
    storage.push_back(static_cast<ULONG>(tags.size()));
    storage.insert(storage.end(), tags.begin(), tags.end());
}

PropertyValues::PropertyValues(IMAPIProp* source, std::span<const ULONG> asked) : object(source)
{
    std::ranges::transform(asked, std::back_inserter(tags), UnicodeForm);
    TagArray array(tags);
    ULONG count = 0;
    const HRESULT result = object->GetProps(array.get(), MAPI_UNICODE, &count, values.put());
    if (FAILED(result))
        (void)values.release();    // nothing valid was given out
    if (result != MAPI_E_NOT_ENOUGH_MEMORY)
        CheckMapi(result, object, L"read properties");
    if (values && count != tags.size())
        throw MapiError(MAPI_E_CALL_FAILED,
                        L"The mail store gave another number of properties than asked for.");
}

bool PropertyValues::IsTooLong(std::size_t index) const
{
    if (!values)
        return true;
    const SPropValue& value = values.get()[index];
    return PROP_TYPE(value.ulPropTag) == PT_ERROR && value.Value.err == MAPI_E_NOT_ENOUGH_MEMORY;
}

const SPropValue* PropertyValues::Find(std::size_t index) const
{
    if (IsTooLong(index))
        ThrowMapiError(MAPI_E_NOT_ENOUGH_MEMORY, nullptr, L"read a property");
    const SPropValue& value = values.get()[index];
    if (PROP_TYPE(value.ulPropTag) != PT_ERROR)
        return &value;
    if (!MeansAbsent(value.Value.err))
        ThrowMapiError(value.Value.err, nullptr, L"read a property");
    return nullptr;
}

std::wstring PropertyValues::Text(std::size_t index) const
{
    if (IsTooLong(index))
        return TextFromStream(object, tags[index]);
    const SPropValue* value = Find(index);
    return value ? TextOf(*value) : std::wstring();
}

_variant_t PropertyValues::Variant(std::size_t index) const
{
    if (IsTooLong(index) && PROP_TYPE(tags[index]) == PT_UNICODE)
        return TextVariant(TextFromStream(object, tags[index]));
    if (IsTooLong(index) && PROP_TYPE(tags[index]) == PT_BINARY)
        return BinaryVariant(ReadStream(object, tags[index]));
    const SPropValue* value = Find(index);
    return value ? ToVariant(*value) : _variant_t();
}

std::wstring ReadText(IMAPIProp* object, ULONG tag)
{
    return PropertyValues(object, {&tag, 1}).Text(0);
}

std::optional<FILETIME> ReadTime(IMAPIProp* object, ULONG tag)
{
    const PropertyValues values(object, {&tag, 1});
    const SPropValue* value = values.Find(0);
    if (!value || PROP_TYPE(value->ulPropTag) != PT_SYSTIME)
        return std::nullopt;
    return value->Value.ft;
}

std::optional<long> ReadLong(IMAPIProp* object, ULONG tag)
{
    const PropertyValues values(object, {&tag, 1});
    const SPropValue* value = values.Find(0);
    if (!value || PROP_TYPE(value->ulPropTag) != PT_LONG)
        return std::nullopt;
    return value->Value.l;
}

std::optional<std::vector<std::uint8_t>> ReadBinary(IMAPIProp* object, ULONG tag)
{
    const PropertyValues values(object, {&tag, 1});
    if (values.IsTooLong(0))
        return ReadStream(object, tag);
    const SPropValue* value = values.Find(0);
    if (!value || PROP_TYPE(value->ulPropTag) != PT_BINARY)
        return std::nullopt;
    const std::span<const std::uint8_t> bytes = BytesOf(value->Value.bin);
    return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}
