#pragma once

#include "import/InputFile.h"
#include "import/RawMail.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// How sure a `From ` line inside a file must be to begin a message.
enum class SeparatorRule
{
    mailbox,    // a date on it, and an empty line before it or a header field behind it; or an address alone
                // between an empty line and a header field
    singleMessage    // all of these, for a file that should hold one message
};

// True for a line that can begin an mbox: `From `, then an address or a date, and no header field of that
// name.
bool IsSeparatorLine(std::string_view line);

// The messages of an mbox file in their order. Lines of a body that begin with `>From `, `>>From ` and so on
// lose one
// `>`, which undoes the quoting of both usual kinds of mbox; where the writer quoted plain `From ` lines
// only, a
// `>>From ` line was that already and comes out one `>` short, which the file gives no means to tell.
class MboxReader
{
public:
    MboxReader(const std::filesystem::path& path, SeparatorRule rule);

    // The next message; empty behind the last. Throws ImportError when the file cannot be read.
    std::optional<RawMail> Next();

private:
    std::string_view Line() const { return std::string_view(bytes).substr(lineBegin, nextBegin - lineBegin); }
    std::string_view NextLine() const
    {
        return std::string_view(bytes).substr(nextBegin, nextEnd - nextBegin);
    }
    bool IsSeparator(bool afterEmptyLine) const;
    void Advance();
    void ReadNextLine();

    InputFile file;
    SeparatorRule rule;
    std::string bytes;       // of the file, from some line on
    size_t lineBegin = 0;    // of the line to be dealt with, which is empty at the end of the file
    size_t nextBegin = 0;    // of the line behind it
    size_t nextEnd = 0;
};
