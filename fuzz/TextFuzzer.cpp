// The readers of small texts. The input's first byte chooses one of them, the rest is its text.
#include "fuzz/FuzzTarget.h"
#include "fuzz/Requirement.h"
#include "import/HtmlText.h"
#include "import/MailConverter.h"
#include "import/MailDate.h"
#include "import/MailHeaders.h"
#include "import/SourceTree.h"
#include "import/Text.h"

namespace
{
void RequireText(std::string_view text)
{
    Require(IsCleanUtf8(text), "text is UTF-8 without NUL");
}

void ReadDate(std::string_view text)
{
    // As the store keeps times: from 1601 on, and four digits of a year at the most.
    constexpr FileTime endOfYear9999 = 2'650'467'744'000'000'000;
    if (const std::optional<FileTime> time = ParseMailDate(text))
        Require(*time >= 0 && *time < endOfYear9999, "a date is of a year that there is");
}

void ReadHtml(std::string_view bytes)
{
    const std::string html = RepairUtf8(bytes);
    RequireText(HtmlToText(html));
    RequireText(HtmlToText(TextToHtml(html)));
    HtmlCharset(bytes);
}

// The first line names the charset.
void ReadCharset(std::string_view text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    RequireText(DecodeCharset(text.substr(std::min(end + 1, text.size())), text.substr(0, end)));
}

void ReadHeaders(std::string_view bytes)
{
    const HeaderBlock block = FindHeaderBlock(bytes);
    Require(block.begin <= block.end && block.end <= bytes.size(), "a header block lies in its mail");
    const MailHeaders headers(HeaderTextAsUtf8(bytes));
    for (const HeaderField& field : headers.Fields())
    {
        RequireText(headers.Text(field.name));
        for (const MailAddress& address : headers.Addresses(field.name))
        {
            RequireText(address.name);
            RequireText(address.address);
        }
    }
    std::string limited(bytes);
    LimitGroups(limited);
    Require(limited.size() == bytes.size(), "limiting groups replaces characters");
}

void ReadMaildirNames(std::string_view text)
{
    ParseMaildirFlags(std::string(text));
    for (const std::string& name : ParseMaildirFolderName("." + std::string(text)))
        RequireText(name);
}

void ReadWords(std::string_view bytes)
{
    const std::string text = GuessUtf8(bytes);
    RequireText(text);
    RequireText(DecodeWords(text));
    RequireText(CaseFolded(text));
    const std::string lines = WithCrLf(text);
    Require(WithCrLf(lines) == lines, "line ends that are CR LF stay");
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MimeLibrary library;
    constexpr void (*readers[])(std::string_view) = {ReadDate,    ReadHtml,         ReadCharset,
                                                     ReadHeaders, ReadMaildirNames, ReadWords};
    if (size > 0)
        readers[data[0] % std::size(readers)](TextOf(data + 1, size - 1));
    return 0;
}
