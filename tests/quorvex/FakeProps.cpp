#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapicode.h>
#include <mapitags.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

namespace fake
{
namespace
{
void* CopyOf(const void* data, std::size_t size, void* parent)
{
    void* copy = nullptr;
    if (FAILED(FakeMapiMemory::AllocateMore(static_cast<ULONG>(size), parent, &copy)))
        throw std::bad_alloc();
    if (size)
        std::memcpy(copy, data, size);
    return copy;
}

struct ValueWriter
{
    SPropValue& prop;
    void* parent;

    void operator()(std::int32_t value) const { prop.Value.l = value; }
    void operator()(bool value) const { prop.Value.b = value; }
    void operator()(FileTime value) const
    {
        prop.Value.ft.dwLowDateTime = static_cast<DWORD>(value.ticks);
        prop.Value.ft.dwHighDateTime = static_cast<DWORD>(value.ticks >> 32);
    }
    void operator()(const std::wstring& value) const
    {
        if (PROP_TYPE(prop.ulPropTag) == PT_STRING8)
        {
            const std::string narrow(value.begin(), value.end());    // fakes' 8-bit texts are Latin-1
            prop.Value.lpszA = static_cast<char*>(CopyOf(narrow.c_str(), narrow.size() + 1, parent));
            return;
        }
        prop.Value.lpszW =
            static_cast<wchar_t*>(CopyOf(value.c_str(), (value.size() + 1) * sizeof(wchar_t), parent));
    }
    void operator()(const Bytes& value) const
    {
        prop.Value.bin.cb = static_cast<ULONG>(value.size());
        prop.Value.bin.lpb = static_cast<BYTE*>(CopyOf(value.data(), value.size(), parent));
    }
};

Value ValueOf(const SPropValue& prop)
{
    switch (PROP_TYPE(prop.ulPropTag))
    {
    case PT_BOOLEAN:
        return prop.Value.b != 0;
    case PT_SYSTIME:
        return FileTime{static_cast<std::int64_t>(
            static_cast<std::uint64_t>(prop.Value.ft.dwHighDateTime) << 32 | prop.Value.ft.dwLowDateTime)};
    case PT_UNICODE:
        return std::wstring(prop.Value.lpszW);
    case PT_STRING8:
    {
        const std::string_view narrow(prop.Value.lpszA);
        return std::wstring(narrow.begin(), narrow.end());
    }
    case PT_BINARY:
        return Bytes(prop.Value.bin.lpb, prop.Value.bin.lpb + prop.Value.bin.cb);
    default:
        return static_cast<std::int32_t>(prop.Value.l);
    }
}

std::vector<ULONG> TagsOf(const Properties& properties)
{
    std::vector<ULONG> tags;
    for (const auto& [tag, value] : properties)
        tags.push_back(tag);
    return tags;
}

// In characters or bytes; 0 for what has no length.
std::size_t LengthOf(const Value& value)
{
    if (const auto* text = std::get_if<std::wstring>(&value))
        return text->size();
    const auto* bytes = std::get_if<Bytes>(&value);
    return bytes ? bytes->size() : 0;
}

SPropValue GetOneProp(const Properties& properties, const PropHabits& habits, ULONG tag, void* parent)
{
    if (const auto error = habits.errorProps.find(UnicodeTag(tag)); error != habits.errorProps.end())
        return MakeProp(tag, nullptr, error->second, parent);
    const Value* value = Find(properties, tag);
    if (value && habits.longValueAt && LengthOf(*value) >= habits.longValueAt)
        return MakeProp(tag, nullptr, MAPI_E_NOT_ENOUGH_MEMORY, parent);
    return MakeProp(tag, value, MAPI_E_NOT_FOUND, parent);
}
}    // namespace

ULONG UnicodeTag(ULONG tag)
{
    return PROP_TYPE(tag) == PT_STRING8 ? PROP_TAG(PT_UNICODE, PROP_ID(tag)) : tag;
}

const Value* Find(const Properties& properties, ULONG tag)
{
    const auto found = properties.find(UnicodeTag(tag));
    return found == properties.end() ? nullptr : &found->second;
}

SPropValue MakeProp(ULONG tag, const Value* value, SCODE missing, void* parent)
{
    SPropValue prop{};
    prop.ulPropTag = value ? tag : PROP_TAG(PT_ERROR, PROP_ID(tag));
    if (value)
        std::visit(ValueWriter{prop, parent}, *value);
    else
        prop.Value.err = missing;
    return prop;
}

HRESULT GiveLastError(const std::wstring& text, MAPIERROR** error)
{
    *error = nullptr;
    if (text.empty())
        return S_OK;
    void* block = nullptr;
    if (FAILED(FakeMapiMemory::Allocate(sizeof(MAPIERROR), &block)))
        return MAPI_E_NOT_ENOUGH_MEMORY;
    *error = static_cast<MAPIERROR*>(block);
    (*error)->lpszError =
        static_cast<wchar_t*>(CopyOf(text.c_str(), (text.size() + 1) * sizeof(wchar_t), block));
    return S_OK;
}

HRESULT GetProps(const Properties& properties, const PropHabits& habits, const SPropTagArray* tags,
                 ULONG* count, SPropValue** values)
{
    *count = 0;
    *values = nullptr;
    if (FAILED(habits.getProps))
        return habits.getProps;
    const std::vector<ULONG> wanted =
        tags ? std::vector<ULONG>(tags->aulPropTag, tags->aulPropTag + tags->cValues) : TagsOf(properties);
    void* block = nullptr;
    if (FAILED(FakeMapiMemory::Allocate(static_cast<ULONG>(wanted.size() * sizeof(SPropValue)), &block)))
        return MAPI_E_NOT_ENOUGH_MEMORY;
    *values = static_cast<SPropValue*>(block);
    HRESULT result = S_OK;
    for (const ULONG tag : wanted)
    {
        SPropValue& prop = (*values)[(*count)++];
        prop = GetOneProp(properties, habits, tag, block);
        if (PROP_TYPE(prop.ulPropTag) == PT_ERROR)
            result = MAPI_W_ERRORS_RETURNED;
    }
    return result;
}

HRESULT GetPropList(const Properties& properties, SPropTagArray** tags)
{
    void* block = nullptr;
    if (FAILED(FakeMapiMemory::Allocate(static_cast<ULONG>((properties.size() + 1) * sizeof(ULONG)), &block)))
        return MAPI_E_NOT_ENOUGH_MEMORY;
    *tags = static_cast<SPropTagArray*>(block);
    for (const auto& [tag, value] : properties)
        (*tags)->aulPropTag[(*tags)->cValues++] = tag;
    return S_OK;
}

HRESULT OpenTextStream(const Properties& properties, const PropHabits& habits, ULONG tag, REFIID iid,
                       IUnknown** stream)
{
    *stream = nullptr;
    if (const auto error = habits.errorProps.find(UnicodeTag(tag)); error != habits.errorProps.end())
        return error->second;
    if (!IsEqualIID(iid, IID_IStream))
        return MAPI_E_INTERFACE_NOT_SUPPORTED;
    const Value* value = Find(properties, tag);
    const auto* text = value ? std::get_if<std::wstring>(value) : nullptr;
    const auto* bytes = value ? std::get_if<Bytes>(value) : nullptr;
    if (!text && !bytes)
        return MAPI_E_NOT_FOUND;
    *stream = text ? SHCreateMemStream(reinterpret_cast<const BYTE*>(text->data()),
                                       static_cast<UINT>(text->size() * sizeof(wchar_t)))
                   : SHCreateMemStream(bytes->data(), static_cast<UINT>(bytes->size()));
    return *stream ? S_OK : MAPI_E_NOT_ENOUGH_MEMORY;
}

HRESULT SetProps(Properties& properties, ULONG count, const SPropValue* values)
{
    for (const SPropValue& prop : std::span(values, count))
        properties[UnicodeTag(prop.ulPropTag)] = ValueOf(prop);
    return S_OK;
}

HRESULT DeleteProps(Properties& properties, const SPropTagArray* tags)
{
    for (const ULONG tag : std::span(tags->aulPropTag, tags->cValues))
        properties.erase(UnicodeTag(tag));
    return S_OK;
}
}    // namespace fake
