#pragma once

#include "import/MailConverter.h"

#include <string>

// The message that these bytes come to, with nothing known beside them.
inline MailRecord Convert(const std::string& bytes)
{
    return ConvertMail({.bytes = bytes, .flags = {}, .envelopeTime = {}, .fileTime = {}});
}
