#pragma once

#include "import/RawMail.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// What a file of a source holds.
enum class MailFileKind
{
    message,
    messageWithSeparator,    // an .eml file that an mbox separator stands at the head of
    mbox
};

struct MailFile
{
    std::filesystem::path path;
    MailFileKind kind = MailFileKind::message;
    MailFlags flags;
    std::optional<FileTime> time;    // of a Maildir's message
};

// A folder as it is to be in the store. Files and folders are in the order of their names.
struct SourceFolder
{
    std::string name;    // clean UTF-8
    std::vector<MailFile> files;
    std::vector<SourceFolder> folders;
    bool isMailbox = false;    // an mbox or a Maildir, which is a folder even when it is empty
};

struct SkippedFile
{
    std::filesystem::path path;
    std::string reason;
};

struct SourcePlan
{
    std::vector<SourceFolder> folders;
    std::vector<SkippedFile> skipped;
};

// Looks through the sources, in their order, without reading their messages. A source is an mbox, a Maildir,
// a message file or a directory of any of these; directories inside are searched, each once, so links cannot
// lead in circles. A file in a directory that is no mail is skipped. Throws ImportError when a file or
// directory cannot be read, or a source holds no mail.
SourcePlan PlanSources(const std::vector<std::filesystem::path>& sources);

// The letters behind `:2,` of a Maildir's file name.
MailFlags ParseMaildirFlags(const std::string& fileName);

// The folders that a Maildir++ name stands for: ".Lists.Build" gives "Lists", "Build"; modified UTF-7 is
// decoded.
std::vector<std::string> ParseMaildirFolderName(const std::string& directoryName);
