// A mailbox file, read under both rules: every reading ends, and no byte comes from anywhere but the file.
#include "fuzz/FuzzTarget.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/Requirement.h"
#include "import/MboxReader.h"

namespace
{
void Read(const MemoryFile& file, std::size_t size, SeparatorRule rule)
{
    MboxReader reader(file.Path(), rule);
    std::size_t bytes = 0;
    std::size_t messages = 0;
    while (const std::optional<RawMail> mail = reader.Next())
    {
        bytes += mail->bytes.size();
        ++messages;
    }
    Require(bytes <= size, "a message is what the file holds between two separator lines");
    Require((messages > 0) == (size > 0), "a file that is not empty holds a message");
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(TextOf(data, size));
    Read(file, size, SeparatorRule::mailbox);
    Read(file, size, SeparatorRule::singleMessage);
    return 0;
}
