#pragma once

#include "import/MailHeaders.h"
#include "import/MimeContent.h"

#include <optional>
#include <string_view>

// The content of a mail that is one text or one HTML text and says so in the way that nearly every such mail
// does: read without the MIME library's tree of objects, which costs more than all else that becomes of a
// mail. The same as ReadMimeContent finds; empty when that has to look. `block` is the header block's bytes
// with the empty line behind it, `headers` what was read from it, `body` the bytes behind both.
std::optional<MimeContent> ReadPlainMail(std::string_view block, const MailHeaders& headers,
                                         std::string_view body);
