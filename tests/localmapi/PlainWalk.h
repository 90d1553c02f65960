#pragma once

#include "tests/localmapi/MailModel.h"

// Whether a message meets a restriction, told straight from MAPI's rules for it. The restriction must be well
// formed, and its texts of the characters that RandomMail writes.
bool Meets(const ModelMessage& message, const SRestriction& restriction);
