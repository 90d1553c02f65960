#pragma once

#include "import/MailAddresses.h"

#include <string>
#include <string_view>
#include <vector>

struct HeaderField
{
    std::string name;     // lower case
    std::string value;    // UTF-8, unfolded, not yet decoded
};

// The header fields of one message, in the order of the mail. Lines that are no fields are passed over.
class MailHeaders
{
public:
    explicit MailHeaders(std::string_view utf8);

    // The value of the first field of this (lower-case) name; empty when there is none.
    std::string_view First(std::string_view name) const;

    // First(name) with RFC 2047 words decoded.
    std::string Text(std::string_view name) const;

    // Every address in all fields of this name, groups flattened. A field in which no address can be found
    // counts as one address whose name is the field's text.
    std::vector<MailAddress> Addresses(std::string_view name) const;

    const std::vector<HeaderField>& Fields() const { return fields; }

private:
    std::vector<HeaderField> fields;
};

// The header block as UTF-8: each line is guessed on its own, for hands of many systems have written into it.
std::string HeaderTextAsUtf8(std::string_view block);

// RFC 2047 words of a header value decoded; the rest as it is.
std::string DecodeWords(std::string_view utf8);

// Where a mail's header block begins and ends. Empty lines and lines of rubbish before the first field are
// passed over when fields that only mail has follow them; a mail without any field has an empty block at its
// start.
struct HeaderBlock
{
    size_t begin = 0;
    size_t end = 0;    // behind the last field's line end; an empty line follows unless the mail ends here
};
HeaderBlock FindHeaderBlock(std::string_view mail);

// True for a line that begins a header field: a name of printable characters and a colon.
bool IsHeaderFieldLine(std::string_view line);

// How many of the lines up to the first empty one are fields that mail has and other texts hardly do.
int CountMailFields(std::string_view text);

// Takes the colons behind the thousandth out of every address field of the mail and of the messages in it.
// Groups do not nest (RFC 5322 3.4), but the MIME library follows them into each other until its stack ends.
void LimitGroups(std::string& mail);
