#pragma once

#include "quorvex/MapiOwners.h"

#include <windows.h>

#include <comutil.h>
#include <mapidefs.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// Reading properties of a MAPI object whole: texts in their Unicode form, and through a stream where the
// object finds them too long for GetProps. All throw MapiError when the object fails; a property that is not
// there is no failure.

// The tag with its string type, if it has one, made Unicode.
ULONG UnicodeForm(ULONG tag) noexcept;

// True for the errors in a property's place that say that there is none, or none of the type asked for.
bool MeansAbsent(SCODE error) noexcept;

// A property tag array in the layout that MAPI's methods take.
class TagArray
{
public:
    explicit TagArray(std::span<const ULONG> tags);

    SPropTagArray* get() noexcept { return reinterpret_cast<SPropTagArray*>(storage.data()); }

private:
    std::vector<ULONG> storage;    // the count, then the tags
};

// Several properties of one object, read by one GetProps. Borrows the object.
class PropertyValues
{
public:
    // String tags may be of either type; they are asked for as Unicode.
    PropertyValues(IMAPIProp* object, std::span<const ULONG> tags);

    // The value of the tag at `index` of the constructor's tags, null when the object has none. Throws when
    // the object refuses the value or finds it too long: neither means that there is none.
    const SPropValue* Find(std::size_t index) const;

    // Whether the value at `index` can only be had through a stream, if there is one.
    bool IsTooLong(std::size_t index) const;

    // The text at `index`, whole; empty when there is none.
    std::wstring Text(std::size_t index) const;

    // The value at `index` as automation takes it, whole; empty when there is none.
    _variant_t Variant(std::size_t index) const;

private:
    IMAPIProp* object;
    std::vector<ULONG> tags;
    PropArray values;    // null when GetProps could not give even one
};

std::wstring ReadText(IMAPIProp* object, ULONG tag);
std::optional<FILETIME> ReadTime(IMAPIProp* object, ULONG tag);
std::optional<long> ReadLong(IMAPIProp* object, ULONG tag);
std::optional<std::vector<std::uint8_t>> ReadBinary(IMAPIProp* object, ULONG tag);
