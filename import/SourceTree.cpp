#include "import/SourceTree.h"

#include "import/ImportError.h"
#include "import/InputFile.h"
#include "import/Interruption.h"
#include "import/MailHeaders.h"
#include "import/MboxReader.h"
#include "import/Text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <map>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr size_t sniffedBytes = 16 * 1024;
constexpr const char* notMail = "no mail: it begins neither with an mbox separator nor with a message header";

struct stat StatusOf(const fs::path& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        throw SystemFailure("read", path.string(), errno);
    return status;
}

// The names in a directory, in byte order, so that the outcome is the same on every machine.
std::vector<std::string> SortedNames(const fs::path& directory)
{
    std::error_code error;
    std::vector<std::string> names;
    fs::directory_iterator entry(directory, error);
    while (!error && entry != fs::directory_iterator())
    {
        names.push_back(entry->path().filename().string());
        entry.increment(error);
    }
    if (error)
        throw SystemFailure("read", directory.string(), error.value());
    std::ranges::sort(names);
    return names;
}

bool IsDirectory(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

// A Maildir without `new` has lost it to a tool that drops empty directories.
bool IsMaildir(const fs::path& directory)
{
    return IsDirectory(directory / "cur");
}

std::string FolderName(std::string name)
{
    for (char& character : name)
        if (static_cast<unsigned char>(character) < ' ')
            character = '_';
    return name.empty() ? "Mail" : GuessUtf8(name);
}

std::string NameOfDirectory(const fs::path& directory)
{
    std::error_code error;
    const fs::path whole = fs::canonical(directory, error);
    return FolderName((error ? directory : whole).filename().string());
}

// `list/` and `list` name the same source.
fs::path WithoutLastSeparator(const fs::path& path)
{
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

std::string NameOfDirectorySource(const fs::path& source)
{
    const std::string name = WithoutLastSeparator(source).filename().string();
    return name.empty() || name == "." || name == ".." ? NameOfDirectory(source) : FolderName(name);
}

std::string NameOfMbox(const fs::path& file)
{
    const std::string extension = AsciiLower(file.extension().string());
    return FolderName((extension == ".mbox" || extension == ".mbx" ? file.stem() : file.filename()).string());
}

bool IsEmlName(const fs::path& file)
{
    return AsciiLower(file.extension().string()) == ".eml";
}

// What the file is, or nothing when it is no mail.
std::optional<MailFileKind> KindOf(const fs::path& file)
{
    const std::string head = InputFile(file).ReadUpTo(sniffedBytes);
    const std::string_view firstLine = std::string_view(head).substr(0, head.find('\n'));
    if (IsSeparatorLine(firstLine))
        return IsEmlName(file) ? MailFileKind::messageWithSeparator : MailFileKind::mbox;
    const HeaderBlock block = FindHeaderBlock(head);
    const int needed = IsEmlName(file) ? 0 : 2;
    if (block.end > block.begin && CountMailFields(std::string_view(head).substr(block.begin)) >= needed)
        return MailFileKind::message;
    return std::nullopt;
}

std::optional<FileTime> MaildirTime(const std::string& name, const struct stat& status)
{
    int64_t seconds = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), seconds);
    // A unique name begins with the second of delivery and a dot.
    if (error == std::errc() && *end == '.' && seconds > 0 && seconds < 100'000'000'000)
        return FileTimeFromUnix(seconds);
    return FileTimeFromUnix(status.st_mtime);
}

SourceFolder& ChildFolder(SourceFolder& parent, const std::string& name)
{
    const auto child = std::ranges::find(parent.folders, name, &SourceFolder::name);
    if (child != parent.folders.end())
        return *child;
    return parent.folders.emplace_back(SourceFolder{name, {}, {}, true});
}

bool HoldsMail(const SourceFolder& folder)
{
    return folder.isMailbox || !folder.files.empty() || !folder.folders.empty();
}

class SourceScanner
{
public:
    void AddSource(const fs::path& source)
    {
        const struct stat status = StatusOf(source);
        if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode))
            throw ImportError(source.string() + " is neither a file nor a directory");
        if (S_ISREG(status.st_mode) && VisitFile(source))
            AddFileSource(source, status.st_size == 0);
        if (S_ISDIR(status.st_mode) && Visit(source, status))
            AddDirectorySource(source);
    }

    SourcePlan plan;

private:
    using FileIdentity = std::pair<dev_t, ino_t>;

    // False when the directory has been taken in already.
    bool Visit(const fs::path& path, const struct stat& status)
    {
        const auto [place, isNew] = visited.try_emplace(FileIdentity(status.st_dev, status.st_ino), path);
        if (!isNew)
            Skip(path, "already taken in as " + place->second.string());
        return isNew;
    }

    // By its name, for hard links to one file are several messages.
    bool VisitFile(const fs::path& path)
    {
        std::error_code error;
        const bool isNew = visitedFiles.insert(fs::canonical(path, error)).second;
        if (!isNew)
            Skip(path, "named twice");
        return isNew;
    }

    void Skip(const fs::path& path, const std::string& reason) { plan.skipped.push_back({path, reason}); }

    void AddDirectorySource(const fs::path& source)
    {
        SourceFolder folder;
        folder.name = NameOfDirectorySource(source);
        ScanDirectory(WithoutLastSeparator(source), folder);
        if (!HoldsMail(folder))
            throw ImportError("there is no mail in " + source.string());
        plan.folders.push_back(std::move(folder));
    }

    void AddFileSource(const fs::path& source, bool isEmpty)
    {
        // An empty file is an mbox without messages; only its name could make it anything else.
        const bool isEmptyMbox = isEmpty && !IsEmlName(source);
        const std::optional<MailFileKind> kind = isEmptyMbox ? MailFileKind::mbox : KindOf(source);
        if (!kind)
            throw ImportError(source.string() + " is " + notMail);
        if (*kind == MailFileKind::mbox)
            plan.folders.push_back({NameOfMbox(source), {{source, *kind, {}, {}}}, {}, true});
        else
            FolderOfSingleMessages(source).files.push_back({source, *kind, {}, {}});
    }

    // Message files named one by one lie in the folder of the directory they come from.
    SourceFolder& FolderOfSingleMessages(const fs::path& message)
    {
        std::error_code error;
        const fs::path directory = fs::absolute(message, error).lexically_normal().parent_path();
        const auto [place, isNew] = singleMessageFolders.try_emplace(directory, plan.folders.size());
        if (isNew)
            plan.folders.push_back({NameOfDirectory(directory), {}, {}, false});
        return plan.folders[place->second];
    }

    void ScanDirectory(const fs::path& directory, SourceFolder& folder)
    {
        ThrowIfInterrupted();
        const bool isMaildir = IsMaildir(directory);
        if (isMaildir)
            ScanMessages(directory, folder);
        for (const std::string& name : SortedNames(directory))
        {
            if (isMaildir && (name == "cur" || name == "new" || name == "tmp"))
                continue;
            ScanEntry(directory / name, isMaildir && name.starts_with('.'), folder);
        }
    }

    void ScanEntry(const fs::path& path, bool mayBeSubfolder, SourceFolder& folder)
    {
        struct stat status = {};
        if (stat(path.c_str(), &status) != 0)
        {
            if (errno != ENOENT && errno != ELOOP)
                throw SystemFailure("read", path.string(), errno);
            return Skip(path, "a link that leads nowhere");
        }
        if (S_ISREG(status.st_mode))
            return ScanFile(path, status.st_size == 0, folder);
        if (!S_ISDIR(status.st_mode))
            return Skip(path, "neither a file nor a directory");
        if (Visit(path, status))
            ScanSubdirectory(path, mayBeSubfolder && IsMaildir(path), folder);
    }

    void ScanSubdirectory(const fs::path& path, bool isMaildirSubfolder, SourceFolder& folder)
    {
        const std::string name = path.filename().string();
        const std::vector<std::string> names =
            isMaildirSubfolder ? ParseMaildirFolderName(name) : std::vector<std::string>();
        if (!names.empty())
        {
            SourceFolder* target = &folder;
            for (const std::string& part : names)
                target = &ChildFolder(*target, FolderName(part));
            return ScanDirectory(path, *target);
        }
        SourceFolder child;
        child.name = FolderName(name);
        ScanDirectory(path, child);
        if (HoldsMail(child))
            folder.folders.push_back(std::move(child));
    }

    void ScanFile(const fs::path& path, bool isEmpty, SourceFolder& folder)
    {
        if (isEmpty && AsciiLower(path.extension().string()) != ".mbox")
            return Skip(path, "empty");
        const std::optional<MailFileKind> kind = isEmpty ? MailFileKind::mbox : KindOf(path);
        if (!kind)
            return Skip(path, notMail);
        if (*kind == MailFileKind::mbox)
            folder.folders.push_back({NameOfMbox(path), {{path, *kind, {}, {}}}, {}, true});
        else
            folder.files.push_back({path, *kind, {}, {}});
    }

    void ScanMessages(const fs::path& maildir, SourceFolder& folder)
    {
        folder.isMailbox = true;
        std::vector<MailFile> messages;
        for (const char* const part : {"cur", "new"})
            if (IsDirectory(maildir / part))
                for (const std::string& name : SortedNames(maildir / part))
                    AddMessage(maildir / part / name, name, messages);
        // Read or new, the messages of one Maildir are one sequence.
        std::ranges::stable_sort(messages, {},
                                 [](const MailFile& file) { return file.path.filename().string(); });
        std::ranges::move(messages, std::back_inserter(folder.files));
        if (IsDirectory(maildir / "tmp"))
            for (const std::string& name : SortedNames(maildir / "tmp"))
                if (!name.starts_with('.'))
                    Skip(maildir / "tmp" / name, "its delivery to the Maildir was never finished");
    }

    void AddMessage(const fs::path& path, const std::string& name, std::vector<MailFile>& messages)
    {
        // A Maildir's messages never begin with a dot.
        if (name.starts_with('.'))
            return;
        struct stat status = {};
        if (stat(path.c_str(), &status) != 0)
            throw SystemFailure("read", path.string(), errno);
        if (!S_ISREG(status.st_mode))
            return Skip(path, "not a file");
        if (faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
            throw SystemFailure("read", path.string(), errno);
        messages.push_back({path, MailFileKind::message, ParseMaildirFlags(name), MaildirTime(name, status)});
    }

    std::map<FileIdentity, fs::path> visited;
    std::set<fs::path> visitedFiles;
    std::map<fs::path, size_t> singleMessageFolders;
};
}    // namespace

SourcePlan PlanSources(const std::vector<fs::path>& sources)
{
    SourceScanner scanner;
    for (const fs::path& source : sources)
        scanner.AddSource(source);
    return std::move(scanner.plan);
}
