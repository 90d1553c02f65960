#include "localmapi/PropertyMethods.h"

#include "localmapi/Arguments.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/TextConversion.h"
#include "localmapi/storage/NamedProperties.h"

#include <mapiguid.h>

#include <algorithm>
#include <cstring>

namespace
{
PropertyName NameOf(const MAPINAMEID* name)
{
    if (!name || !name->lpguid || (name->ulKind == MNID_STRING && !name->Kind.lpwstrName))
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    const auto* guid = reinterpret_cast<const std::uint8_t*>(name->lpguid);
    PropertyName stored{Blob(guid, guid + sizeof(GUID)), std::int64_t{name->Kind.lID}};
    if (name->ulKind == MNID_STRING)
        stored.name = Utf8FromWide(name->Kind.lpwstrName);
    return stored;
}

bool IsOfSet(const NamedProperty& property, const GUID* set)
{
    return !set || std::memcmp(property.name.guid.data(), set, sizeof(GUID)) == 0;
}

MAPINAMEID* MakeName(const PropertyName& stored, void* owner)
{
    auto* name = AllocateMapiArray<MAPINAMEID>(1, owner);
    name->lpguid = AllocateMapiArray<GUID>(1, owner);
    std::memcpy(name->lpguid, stored.guid.data(), sizeof(GUID));
    if (const auto* lid = std::get_if<std::int64_t>(&stored.name))
    {
        name->ulKind = MNID_ID;
        name->Kind.lID = static_cast<LONG>(*lid);
        return name;
    }
    const std::wstring text = WideFromUtf8(std::get<std::string>(stored.name));
    name->ulKind = MNID_STRING;
    name->Kind.lpwstrName = AllocateMapiArray<wchar_t>(text.size() + 1, owner);
    text.copy(name->Kind.lpwstrName, text.size());
    return name;
}

MapiBuffer<SPropTagArray> MakeTags(const std::vector<std::uint32_t>& ids)
{
    auto tags = MakeMapiBuffer<SPropTagArray>(CbNewSPropTagArray(ids.size()));
    for (const std::uint32_t id : ids)
        tags->aulPropTag[tags->cValues++] = id == 0 ? PROP_TAG(PT_ERROR, 0) : PROP_TAG(PT_UNSPECIFIED, id);
    return tags;
}

std::vector<NamedProperty> NamedPropertiesOf(StoreFile& file, const GUID* set)
{
    std::vector<NamedProperty> all = ListNamedProperties(file);
    std::erase_if(all, [set](const NamedProperty& property)
                  { return property.name.guid.size() != sizeof(GUID) || !IsOfSet(property, set); });
    return all;
}
}    // namespace

HRESULT property_methods::GetNamesFromIDs(StoreFile& file, SPropTagArray** tags, const GUID* set, ULONG flags,
                                          ULONG* count, MAPINAMEID*** names)
{
    Given(count) = 0;
    Given(names) = nullptr;
    RequireKnownFlags(flags, MAPI_NO_STRINGS | MAPI_NO_IDS);
    if (!tags)
        throw MapiError(MAPI_E_INVALID_PARAMETER);
    const std::vector<NamedProperty> known = NamedPropertiesOf(file, set);
    std::vector<std::uint32_t> ids;
    if (*tags)
        std::ranges::transform(std::span((*tags)->aulPropTag, (*tags)->cValues), std::back_inserter(ids),
                               [](ULONG tag) { return PROP_ID(tag); });
    else
        std::ranges::transform(known, std::back_inserter(ids), &NamedProperty::id);

    auto found = MakeMapiBuffer<MAPINAMEID*>(ids.size() * sizeof(MAPINAMEID*));
    bool anyUnknown = false;
    for (std::size_t i = 0; i < ids.size(); ++i)
    {
        const auto property = std::ranges::find(known, ids[i], &NamedProperty::id);
        if (property == known.end())
            anyUnknown = true;
        else
            found.get()[i] = MakeName(property->name, found.get());
    }
    if (!*tags)
        *tags = MakeTags(ids).release();    // now the caller's
    *count = static_cast<ULONG>(ids.size());
    *names = found.release();    // now the caller's
    return anyUnknown ? MAPI_W_ERRORS_RETURNED : S_OK;
}

HRESULT property_methods::GetIDsFromNames(StoreFile& file, ULONG count, MAPINAMEID** names, ULONG flags,
                                          SPropTagArray** tags)
{
    Given(tags) = nullptr;
    RequireKnownFlags(flags, MAPI_CREATE);
    std::vector<std::uint32_t> ids;
    for (ULONG i = 0; names && i < count; ++i)
    {
        const bool isNumberInDisguise =
            names[i] && names[i]->lpguid && *names[i]->lpguid == PS_MAPI && names[i]->ulKind == MNID_ID;
        ids.push_back(isNumberInDisguise
                          ? static_cast<std::uint32_t>(names[i]->Kind.lID)
                          : FindNamedProperty(file, NameOf(names[i]), (flags & MAPI_CREATE) != 0));
    }
    if (count == 0)
        std::ranges::transform(ListNamedProperties(file), std::back_inserter(ids), &NamedProperty::id);
    else if (!names)
        throw MapiError(MAPI_E_INVALID_PARAMETER);

    const bool anyUnknown = std::ranges::find(ids, 0u) != ids.end();
    *tags = MakeTags(ids).release();    // now the caller's
    return anyUnknown ? MAPI_W_ERRORS_RETURNED : S_OK;
}
