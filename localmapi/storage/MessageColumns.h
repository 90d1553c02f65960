#pragma once

#include "localmapi/storage/PropertyTag.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Where a property of a message stands in the file.
struct MessageColumn
{
    std::uint32_t tag;
    const char* expression;    // SQL; r is the message, t its row of message_text
    const char* writeTo;       // the column of `message` that a client may set; null for the others
    bool required;             // NOT NULL in the file: an absent value is kept as the empty one
};

// Every property that is not kept in message_property; the long texts come last.
std::span<const MessageColumn> MessageColumns();
std::size_t ShortColumnCount();                               // of those before the long texts
const MessageColumn* FindMessageColumn(std::uint32_t tag);    // null when it is a further property

// Whether the property is one of the long texts in message_text.
bool IsMessageText(std::uint32_t tag);
