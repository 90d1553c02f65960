#pragma once

#include "localmapi/storage/StoreFile.h"

#include <cstdint>
#include <variant>
#include <vector>

// The name of a property with an id from 0x8000 on: a set's GUID, as it lies in memory, and a number
// (MNID_ID) or a text in UTF-8 (MNID_STRING).
struct PropertyName
{
    Blob guid;
    std::variant<std::int64_t, std::string> name;
};

struct NamedProperty
{
    std::uint32_t id;
    PropertyName name;
};

// The id that stands for the name; 0 when none does yet and `create` is false.
// Throws StoreError Full when there is no id left.
std::uint32_t FindNamedProperty(StoreFile& file, const PropertyName& name, bool create);

std::vector<NamedProperty> ListNamedProperties(StoreFile& file);
