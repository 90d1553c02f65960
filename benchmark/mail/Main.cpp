#include "benchmark/mail/BulkMailbox.h"
#include "benchmark/mail/BulkWriter.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

namespace
{
constexpr const char* usage =
    "Usage: bulkmail FORM TARGET MESSAGES [FOLDERS]\n"
    "\n"
    "Writes the made-up mailbox of that many messages to TARGET, which must not be\n"
    "there yet, and prints how many of them are copies. FORM is\n"
    "  mbox, maildir     one folder of mail\n"
    "  store             a store file, with the messages in FOLDERS folders (1)\n"
    "  equal             a store file of messages with one subject and unlike texts\n";

std::size_t Number(const char* text)
{
    return std::strtoull(text, nullptr, 10);
}

int Run(std::string_view form, const char* target, std::size_t messages, std::size_t folders)
{
    const BulkMailbox mailbox(messages, form == "equal" ? BulkMailbox::Kind::equalSubjects
                                                        : BulkMailbox::Kind::ordinary);
    if (form == "mbox")
        WriteBulkMbox(mailbox, target);
    else if (form == "maildir")
        WriteBulkMaildir(mailbox, target);
    else
        WriteBulkStore(mailbox, folders, target);
    std::printf("%zu\n", mailbox.Copies());
    return 0;
}
}    // namespace

int main(int argc, char** argv)
{
    const std::string_view form = argc > 1 ? argv[1] : "";
    const bool known = form == "mbox" || form == "maildir" || form == "store" || form == "equal";
    if (argc < 4 || argc > 5 || !known || Number(argv[3]) == 0 || (argc == 5 && Number(argv[4]) == 0))
        return std::fputs(usage, stderr), 1;
    try
    {
        return Run(form, argv[2], Number(argv[3]), argc == 5 ? Number(argv[4]) : 1);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "bulkmail: %s\n", error.what());
        return 2;
    }
}
