// The short ways of reading a mail against the MIME library's: where a short way answers, the answers are
// equal.
#include "fuzz/FuzzTarget.h"
#include "fuzz/Requirement.h"
#include "import/MailConverter.h"
#include "import/MailHeaders.h"
#include "import/PlainAddresses.h"
#include "import/PlainMail.h"

#include <algorithm>

namespace
{
bool IsSameAddress(const MailAddress& one, const MailAddress& other)
{
    return one.name == other.name && one.address == other.address;
}

void CompareAddresses(const std::string& value)
{
    std::vector<MailAddress> plain;
    if (!ReadPlainAddresses(value, plain))
        return;
    std::vector<MailAddress> whole;
    ReadAddressesByLibrary(value, whole);
    Require(std::ranges::equal(plain, whole, IsSameAddress), "addresses are read alike");
}

// `bodyBegin` is behind the empty line that ends the header block.
void CompareContent(std::string_view mail, const HeaderBlock& block, std::size_t bodyBegin)
{
    const std::string_view body = mail.substr(bodyBegin);
    const MailHeaders headers(HeaderTextAsUtf8(mail.substr(block.begin, block.end - block.begin)));
    std::ranges::for_each(headers.Fields(), CompareAddresses, &HeaderField::value);
    const auto plain = ReadPlainMail(mail.substr(block.begin, bodyBegin - block.begin), headers, body);
    if (!plain)
        return;
    const MimeContent whole = ReadMimeContent(mail.substr(block.begin), body);
    Require(plain->body == whole.body, "the text is read alike");
    Require(plain->html == whole.html, "the HTML is read alike");
    Require(plain->messageClass == whole.messageClass, "the class is told alike");
    Require(plain->attachments.empty() && whole.attachments.empty(), "a plain mail has no attachments");
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MimeLibrary library;
    const std::string_view mail = TextOf(data, size);
    const HeaderBlock block = FindHeaderBlock(mail);
    if (block.end == block.begin)
        return 0;
    const std::string_view behind = mail.substr(block.end);
    const std::size_t emptyLine = behind.starts_with("\r\n") ? 2 : behind.starts_with('\n') ? 1 : 0;
    CompareContent(mail, block, block.end + emptyLine);
    return 0;
}
