#include "tests/import/ChildProcess.h"
#include "tests/import/StoreQuery.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace fs = std::filesystem;

// All of the real mail, imported once for all tests that only look.
class Corpus : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const char* const folder = std::getenv("TQODR_CORPUS");
        if (!folder || !fs::is_directory(folder))
            return;
        corpus = folder;
        directory = std::make_unique<TemporaryDirectory>();
        result = ImportInto(directory->Path() / "store.db");
    }

    static void TearDownTestSuite() { directory.reset(); }

    void SetUp() override
    {
        if (!directory)
            GTEST_SKIP() << "there is no folder of real mail beside the project";
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }

    static StoreQuery Store() { return StoreQuery(directory->Path() / "store.db"); }

    static ChildResult ImportInto(const fs::path& store)
    {
        return RunProgram("mailimport", {store.string(), (corpus / "ham.mbox").string(),
                                         (corpus / "list").string(), (corpus / "odd").string()});
    }

    // The corpus's mbox is quoted throughout: each line that begins with the separator's word is one.
    int64_t CountSeparators() const
    {
        int64_t count = 0;
        std::ifstream file(corpus / "ham.mbox");
        for (std::string line; std::getline(file, line);)
            count += line.starts_with("From ");
        return count;
    }

    int64_t CountFiles(const std::string& name) const
    {
        int64_t count = 0;
        for (const fs::directory_entry& entry : fs::directory_iterator(corpus / name))
            count += entry.is_regular_file() && !entry.path().filename().string().starts_with('.');
        return count;
    }

    static inline fs::path corpus;
    static inline std::unique_ptr<TemporaryDirectory> directory;
    static inline ChildResult result;
};

TEST_F(Corpus, ComesInWithoutLosingAMessage)
{
    EXPECT_EQ(Store().MessagesByFolder(),
              (std::map<std::string, int64_t>{
                  {"ham", CountSeparators()}, {"list", CountFiles("list/cur")}, {"odd", CountFiles("odd")}}));
}

TEST_F(Corpus, ComesInWhole)
{
    StoreQuery query = Store();
    EXPECT_EQ(query.Text("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(query.Number("SELECT count(*) FROM message WHERE message_class = ''"), 0);
    EXPECT_EQ(query.Number("SELECT count(*) FROM message WHERE id NOT IN "
                           "(SELECT message_id FROM message_text WHERE body IS NOT NULL AND headers <> '')"),
              0);
    EXPECT_EQ(query.Number("SELECT count(*) FROM message m JOIN message_text t ON t.message_id = m.id WHERE "
                           "instr(subject, char(0)) + instr(body, char(0)) + instr(headers, char(0)) > 0"),
              0);
    EXPECT_EQ(
        query.Number("SELECT count(*) FROM attachment a JOIN attachment_data d USING (message_id, number) "
                     "WHERE size <> length(data)"),
        0);
    EXPECT_EQ(query.Number("SELECT count(*) FROM message WHERE (message_flags & 16 <> 0) <> "
                           "(id IN (SELECT message_id FROM attachment))"),
              0);
    EXPECT_EQ(query.Number("SELECT count(*) FROM message m JOIN folder f ON f.id = m.folder_id "
                           "WHERE f.name = 'list' AND message_flags & 1 = 0"),
              0);
}

TEST_F(Corpus, ReadsWhatItsOddMessagesSay)
{
    StoreQuery query = Store();
    EXPECT_EQ(
        query.Number("SELECT count(*) FROM message WHERE subject = 'Eelanal\u00FC\u00FCsi p\u00E4ring'"), 1);
    EXPECT_EQ(query.Number("SELECT count(*) FROM attachment WHERE file_name = '\u3066\u3059\u3068.txt'"), 1);
    EXPECT_EQ(query.Number("SELECT count(*) FROM message WHERE sender_name = 'J\u00F8rn St\u00F8ylen'"), 1);
    EXPECT_GE(query.Number("SELECT count(*) FROM attachment WHERE method = 5 AND file_name LIKE '%.eml'"), 3);
}

TEST_F(Corpus, DoublesItsRowsWhenImportedTwice)
{
    const fs::path copy = directory->Path() / "copy.db";
    fs::copy_file(directory->Path() / "store.db", copy);
    const int64_t recipients = Store().Number("SELECT count(*) FROM recipient");

    const ChildResult again = ImportInto(copy);

    ASSERT_EQ(again.exitCode, 0) << again.errors;
    for (const auto& [folder, count] : Store().MessagesByFolder())
        EXPECT_EQ(StoreQuery(copy).MessagesByFolder()[folder], 2 * count) << folder;
    EXPECT_EQ(StoreQuery(copy).Number("SELECT count(*) FROM recipient"), 2 * recipients);
}
