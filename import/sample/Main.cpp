#include "import/sample/SampleMailbox.h"
#include "import/sample/SampleWriter.h"

#include <cstdio>
#include <exception>
#include <string_view>

namespace
{
constexpr const char* usage =
    "Usage: mailsample DIR\n"
    "\n"
    "Writes a made-up mailbox of more than 2,000 messages below DIR, which must be new\n"
    "or empty, with duplicates of every kind that a scan can tell apart, and says how\n"
    "many of each. The same mailbox comes out every time. Import it with\n"
    "\n"
    "  mailimport OUT.db DIR/*\n";

void PrintCounts(const SampleMailbox& mailbox, const char* directory)
{
    int copies = 0;
    for (const PlantedCopies& planted : mailbox.planted)
        copies += planted.count;
    std::printf("%s: %d messages, of which %d are copies:\n", directory, mailbox.originals + copies, copies);
    for (const PlantedCopies& planted : mailbox.planted)
        std::printf("%6d  %s\n", planted.count, planted.description);
}
}    // namespace

int main(int argc, char** argv)
{
    const std::string_view argument = argc > 1 ? argv[1] : "";
    if (argument == "--help")
        return std::fputs(usage, stdout), 0;
    if (argument == "--version")
        return std::puts("mailsample " TQODR_VERSION), 0;
    if (argc != 2 || argument.starts_with('-'))
        return std::fputs("mailsample: name one directory to write to; see mailsample --help\n", stderr), 1;
    try
    {
        const SampleMailbox mailbox = MakeSampleMailbox();
        WriteSampleMailbox(mailbox, argv[1]);
        PrintCounts(mailbox, argv[1]);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "mailsample: %s\n", error.what());
        return 2;
    }
}
