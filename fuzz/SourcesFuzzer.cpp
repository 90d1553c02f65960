// A folder of mail, imported whole. The input holds files, each begun by a line "NAME" behind an empty name
// line (see ReadFiles); the names are as hostile as a file system lets them be.
#include "fuzz/FuzzTarget.h"
#include "fuzz/Requirement.h"
#include "fuzz/ScratchFolder.h"
#include "import/ImportError.h"
#include "import/Importer.h"
#include "import/MailConverter.h"
#include "import/SourceTree.h"
#include "import/StoreFile.h"

#include <fstream>
#include <string>

namespace
{
namespace fs = std::filesystem;

constexpr std::string_view fileMark = "\n\x01";
constexpr int mostFiles = 12;

// A path that stays below the folder it is put in, whatever the text; empty when the text gives none.
fs::path SafePath(std::string_view text)
{
    fs::path path;
    for (const fs::path& part : fs::path(text.substr(0, text.find('\0'))).relative_path())
        if (!part.empty() && part != "." && part != ".." && part.native().size() <= 255)
            path /= part;
    return path.native().size() <= 600 ? path : fs::path();
}

void WriteFile(const fs::path& folder, std::string_view named)
{
    const std::size_t end = std::min(named.find('\n'), named.size());
    const fs::path name = SafePath(named.substr(0, end));
    std::error_code error;
    fs::create_directories((folder / name).parent_path(), error);
    if (!name.empty())
        std::ofstream(folder / name, std::ios::binary) << named.substr(std::min(end + 1, named.size()));
}

// Files stand one behind the other, a line feed and a byte 1 between; a file is its name, a line feed and its
// bytes.
void WriteFiles(const fs::path& folder, std::string_view input)
{
    for (int count = 0; count < mostFiles && !input.empty(); ++count)
    {
        const std::size_t end = std::min(input.find(fileMark), input.size());
        WriteFile(folder, input.substr(0, end));
        input.remove_prefix(std::min(end + fileMark.size(), input.size()));
    }
}

// Throws ImportError where the importer refuses.
void Import(const fs::path& source, const fs::path& store)
{
    const SourcePlan plan = PlanSources({source});
    const std::unique_ptr<StoreFile> file = OpenStore(store);
    ImportCounts counts;
    {
        StoreWriter writer(file->GetDatabase());
        counts = ImportPlan(plan, writer, [](const ImportCounts&) {});
    }
    Database& database = file->GetDatabase();
    Require(database.ReadNumber("SELECT count(*) FROM message") == counts.messages,
            "every message is in the store");
    Require(database.ReadNumber("SELECT count(*) FROM folder WHERE length(name) = 0") == 0,
            "every folder has a name");
    Require(database.ReadNumber("SELECT count(*) FROM pragma_foreign_key_check") == 0,
            "every part belongs to something");
    file->Commit();
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MimeLibrary library;
    static const ScratchFolder scratch;
    scratch.Clear();
    const fs::path source = scratch.Path() / "mail";
    const fs::path store = scratch.Path() / "store.db";
    fs::create_directory(source);
    WriteFiles(source, TextOf(data, size));
    bool imported = true;
    try
    {
        Import(source, store);
    }
    catch (const ImportError&)
    {
        imported = false;
    }
    const auto entries = fs::directory_iterator(scratch.Path());
    Require(std::distance(begin(entries), end(entries)) == (imported ? 2 : 1),
            "an import leaves its store, or nothing");
    return 0;
}
