#pragma once

#include "import/MailRecord.h"

#include <string>
#include <string_view>
#include <vector>

// What a mail's MIME parts come to in a message of the store. Text is clean UTF-8 with CR LF line ends.
struct MimeContent
{
    std::string body;    // from the text/plain parts, else from the HTML made plain
    std::string html;    // empty when no part is HTML; UTF-8 whatever its <meta> says
    std::string messageClass = "IPM.Note";
    std::vector<AttachmentRecord> attachments;
};

// `mail` begins with its first header field. `body` is the mail behind its header block, as it came; it
// becomes the body when the parts that the header promises cannot be found in it.
MimeContent ReadMimeContent(std::string_view mail, std::string_view body);
