#pragma once

#include "import/MailRecord.h"

#include <gmime/gmime.h>

#include <string>

// The part's bytes with its transfer encoding undone; what the encoding does not explain is kept as it
// stands.
std::string DecodedContent(GMimePart* part);

// A part, or a message in the message, as attachment. `ordinal` counts from 1 and names what has no name of
// its own. `object` is only borrowed.
AttachmentRecord ReadAttachment(GMimeObject* object, size_t ordinal);
