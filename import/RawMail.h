#pragma once

#include "import/MailDate.h"

#include <optional>
#include <string>

// What a mailbox knows of a message beside the message itself.
struct MailFlags
{
    bool read = false;
    bool flagged = false;
    bool trashed = false;
    bool draft = false;
    bool replied = false;
    bool passed = false;    // forwarded or bounced on
};

// One message as its source holds it.
struct RawMail
{
    std::string bytes;    // from the first header field on, without an mbox separator
    MailFlags flags;
    bool hasStatusHeaders = false;           // an mbox keeps flags in the Status and X-Status fields
    std::optional<FileTime> envelopeTime;    // of the mbox separator
    std::optional<FileTime> fileTime;        // when the Maildir took the message in
};
