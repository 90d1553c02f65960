#pragma once

#include "engine/ScanSettings.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What a run was asked to do, by the words of the command line.
enum class Task
{
    help,
    version,
    folders,
    scan,
};

// The choices of a scan.
struct ScanOptions
{
    std::vector<std::wstring> folders;     // paths as written; none means every folder
    std::vector<std::wstring> excluded;    // paths as written
    int timeSpan = timeSpanAnytime;        // index of the list of time spans
    bool senderName = false;
    bool recipientName = false;
    bool internetHeader = false;
    bool attachments = false;
    bool sendTime = false;
    std::optional<DuplicateAction> action;    // none: report only
    std::wstring destination;                 // path as written; empty unless the action copies or moves
    std::wstring logFile;                     // empty: no log
    bool quiet = false;
    bool yes = false;    // delete for good without a question
};

struct Command
{
    Task task = Task::help;
    ScanOptions scan;
};

// Input that cannot be carried out. The text is one line without an end: what was wrong and what would be
// right.
class UsageError : public std::exception
{
public:
    explicit UsageError(std::wstring text) : text(std::move(text)) {}

    const std::wstring& GetText() const noexcept { return text; }
    const char* what() const noexcept override { return "wrong usage"; }

private:
    std::wstring text;
};

// Reads the words that follow the program's name. Options may stand anywhere, as "--name value" or
// "--name=value"; after "--" every word is a folder. Throws UsageError.
Command ParseCommandLine(const std::vector<std::wstring>& words);
