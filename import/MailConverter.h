#pragma once

#include "import/MailRecord.h"
#include "import/RawMail.h"

// Starts the MIME library for the life of the program and ends it again; one object, made before any thread.
class MimeLibrary
{
public:
    MimeLibrary();
    ~MimeLibrary();
    MimeLibrary(const MimeLibrary&) = delete;
    MimeLibrary& operator=(const MimeLibrary&) = delete;
};

// The message that a mail comes to. Never fails for the sake of a mail's content: what cannot be decoded is
// kept as far as it can be read. May run on several threads at once while a MimeLibrary lives.
MailRecord ConvertMail(const RawMail& mail);
