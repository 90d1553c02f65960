#include "import/ImportError.h"
#include "import/Importer.h"
#include "import/Interruption.h"
#include "import/MailConverter.h"
#include "import/SourceTree.h"
#include "import/StoreFile.h"
#include "import/StoreWriter.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr int exitUsage = 1;
constexpr int exitFailure = 2;
constexpr int exitSignal = 128;

constexpr std::string_view usage =
    "Usage: mailimport OUT.db MAIL...\n"
    "\n"
    "Reads real mail into a mail store, one file that LocalMapi serves. Each MAIL is\n"
    "  an mbox file,\n"
    "  a Maildir, with its Maildir++ sub-folders,\n"
    "  a directory of message files (.eml), mboxes and Maildirs, however deep,\n"
    "  or a single message file,\n"
    "and becomes a folder of its own name; the name of a folder that the store has\n"
    "already (Inbox, Sent Items ...) fills that folder. A store that does not exist is\n"
    "made, one that does is added to; if anything fails nothing is changed.\n"
    "\n"
    "  --help     show this text\n"
    "  --version  show the version\n"
    "\n"
    "Exit status: 0 done, 1 wrong usage, 2 nothing was imported, 128 + N stopped by\n"
    "signal N.\n";

std::string Counted(int64_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// A line on the terminal that is written over again and again; nothing where errors do not go to a terminal.
class ProgressLine
{
public:
    ~ProgressLine()
    {
        if (shown)
            std::fputs("\r\033[K", stderr);
    }

    void Show(const ImportCounts& counts)
    {
        const Clock::time_point now = Clock::now();
        if (!onTerminal || now < next)
            return;
        next = now + std::chrono::milliseconds(100);
        std::fprintf(stderr, "\r%s in %s", Counted(counts.messages, "message").c_str(),
                     Counted(counts.folders, "folder").c_str());
        shown = true;
    }

private:
    bool onTerminal = isatty(STDERR_FILENO);
    bool shown = false;
    Clock::time_point next;
};

void PrintSummary(const ImportCounts& counts, const SourcePlan& plan, const std::string& store,
                  Clock::duration time)
{
    std::printf("%s: imported %s into %s in %.2f seconds\n", store.c_str(),
                Counted(counts.messages, "message").c_str(), Counted(counts.folders, "folder").c_str(),
                std::chrono::duration<double>(time).count());
    if (plan.skipped.empty())
        return;
    std::printf("skipped %s:\n", Counted(static_cast<int64_t>(plan.skipped.size()), "file").c_str());
    for (const SkippedFile& file : plan.skipped)
        std::printf("  %s: %s\n", file.path.c_str(), file.reason.c_str());
}

void Import(const std::filesystem::path& store, const std::vector<std::filesystem::path>& sources)
{
    const Clock::time_point begin = Clock::now();
    CheckStorePath(store);
    const SourcePlan plan = PlanSources(sources);
    const MimeLibrary library;
    const std::unique_ptr<StoreFile> file = OpenStore(store);
    ImportCounts counts;
    {
        ProgressLine line;
        StoreWriter writer(file->GetDatabase());
        counts = ImportPlan(plan, writer, [&](const ImportCounts& so) { line.Show(so); });
    }
    ThrowIfInterrupted();
    file->Commit();
    PrintSummary(counts, plan, store.string(), Clock::now() - begin);
}

int UsageError(const std::string& what)
{
    std::cerr << "mailimport: " << what << "; see mailimport --help\n";
    return exitUsage;
}

int Run(std::vector<std::string> arguments)
{
    bool optionsEnded = false;
    std::vector<std::filesystem::path> files;
    for (const std::string& argument : arguments)
    {
        if (optionsEnded || argument.size() < 2 || argument[0] != '-')
            files.emplace_back(argument);
        else if (argument == "--help")
            return std::cout << usage, 0;
        else if (argument == "--version")
            return std::cout << "mailimport " << TQODR_VERSION << "\n", 0;
        else if (argument == "--")
            optionsEnded = true;
        else
            return UsageError("there is no option " + argument);
    }
    if (files.size() < 2)
        return UsageError(files.empty() ? "no store and no mail named" : "no mail named");
    Import(files.front(), {files.begin() + 1, files.end()});
    return 0;
}
}    // namespace

int main(int argc, char** argv)
{
    CatchSignals();
    try
    {
        return Run({argv + 1, argv + argc});
    }
    catch (const Interrupted& stop)
    {
        std::cerr << "mailimport: " << stop.what() << "\n";
        return exitSignal + stop.signal;
    }
    catch (const std::exception& error)
    {
        std::cerr << "mailimport: " << error.what() << "\n";
        return exitFailure;
    }
}
