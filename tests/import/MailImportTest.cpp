#include "tests/import/ChildProcess.h"
#include "tests/import/StoreQuery.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <sstream>
#include <thread>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

class MailImport : public testing::Test
{
protected:
    ChildResult Import(std::vector<std::string> sources, const ChildOptions& options = {})
    {
        sources.insert(sources.begin(), store.string());
        return RunProgram("mailimport", sources, options);
    }

    std::string Path(const std::string& name) const { return (directory.Path() / name).string(); }

    static std::string Bytes(const fs::path& path)
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return bytes.str();
    }

    // A failure says one thing in one line and leaves nothing beside the store.
    void ExpectFailure(const ChildResult& result, int exitCode = 2)
    {
        EXPECT_EQ(result.exitCode, exitCode) << result.errors;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
        EXPECT_TRUE(result.errors.starts_with("mailimport: ")) << result.errors;
        EXPECT_EQ(result.output, "");
        for (const fs::directory_entry& entry : fs::directory_iterator(store.parent_path()))
            EXPECT_EQ(entry.path(), store);
    }

    std::string Mbox(int messages, size_t bodySize = 10) const
    {
        std::string bytes;
        for (int number = 1; number <= messages; ++number)
            bytes +=
                "From a@b Thu Aug 22 12:36:23 2002\nFrom: a@b\nTo: c@d\nSubject: " + std::to_string(number) +
                "\n\n" + std::string(bodySize, 'x') + "\n\n";
        return bytes;
    }

    TemporaryDirectory directory;
    const fs::path store = directory.Write("out/keep", "").replace_filename("store.db");
    const std::string mail = "From: Ann <a@b>\nTo: c@d, E <e@f>\nCc: g@h\nSubject: hi\n"
                             "Date: Thu, 22 Aug 2002 10:00:00 +0000\n\nbody\n";

    void SetUp() override { fs::remove(store.parent_path() / "keep"); }
};

TEST_F(MailImport, RunsNoTriggerOfTheStoreItAddsTo)
{
    directory.Write("ham.mbox", Mbox(3));
    ASSERT_EQ(Import({Path("ham.mbox")}).exitCode, 0);
    Database(store).Execute("CREATE TRIGGER gone AFTER INSERT ON message BEGIN DELETE FROM message; END");

    ASSERT_EQ(Import({Path("ham.mbox")}).exitCode, 0);

    EXPECT_EQ(StoreQuery(store).Number("SELECT count(*) FROM message"), 6);
}

TEST_F(MailImport, MakesAStoreOfThisFormat)
{
    directory.Write("ham.mbox", Mbox(3));

    const ChildResult result = Import({Path("ham.mbox")});

    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("3 messages"), std::string::npos) << result.output;
    StoreQuery query(store);
    EXPECT_EQ(query.Number("PRAGMA application_id"), 0x544D5153);
    EXPECT_EQ(query.Number("PRAGMA user_version"), 1);
    EXPECT_EQ(query.Text("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(query.Number("SELECT count(*) FROM pragma_foreign_key_check"), 0);
    EXPECT_EQ(query.MessagesByFolder(), (std::map<std::string, int64_t>{{"ham", 3}}));
    EXPECT_EQ(query.Text("SELECT group_concat(subject) FROM (SELECT subject FROM message ORDER BY id)"),
              "1,2,3");
    EXPECT_EQ(query.Text("SELECT container_class FROM folder WHERE name = 'ham'"), "IPF.Note");
    EXPECT_EQ(query.Number("SELECT content_change_number FROM folder WHERE name = 'ham'"), 1);
    EXPECT_EQ(query.Number("SELECT content_change_number FROM folder WHERE id = 3"), 0);
}

TEST_F(MailImport, WritesWhatAMessageHolds)
{
    directory.Write("tree/a.eml", mail);

    ASSERT_EQ(Import({Path("tree")}).exitCode, 0);

    StoreQuery query(store);
    EXPECT_EQ(
        query.Text(
            "SELECT message_class || '|' || subject || '|' || sender_name || '|' || sender_address_type || "
            "'|' || sender_address || '|' || display_to || '|' || display_cc || '|' || display_bcc || "
            "'|' || importance FROM message"),
        "IPM.Note|hi|Ann|SMTP|a@b|c@d; E|g@h||1");
    EXPECT_EQ(query.Text("SELECT body FROM message_text"), "body\r\n");
    EXPECT_EQ(query.Text("SELECT group_concat(row_id || type || name || address_type || address) FROM "
                         "(SELECT * FROM recipient ORDER BY row_id)"),
              "01c@dSMTPc@d,11ESMTPe@f,22g@hSMTPg@h");
    EXPECT_EQ(query.Number("SELECT client_submit_time FROM message"), 126'744'840'000'000'000);
    EXPECT_EQ(query.Number("SELECT message_size FROM message"), static_cast<int64_t>(mail.size()));
}

TEST_F(MailImport, FillsAFolderThatTheStoreHasWhateverItsCase)
{
    directory.Write("INBOX/cur/1.a:2,S", mail);

    ASSERT_EQ(Import({Path("INBOX")}).exitCode, 0);

    EXPECT_EQ(StoreQuery(store).Number("SELECT count(*) FROM message WHERE folder_id = 3"), 1);
}

TEST_F(MailImport, GivesTwoSourcesOfOneNameTwoFolders)
{
    directory.Write("a/x.mbox", Mbox(1));
    directory.Write("b/X.mbox", Mbox(2));
    directory.Write("c/x/cur/1.a:2,", mail);

    ASSERT_EQ(Import({Path("a/x.mbox"), Path("b/X.mbox"), Path("c/x")}).exitCode, 0);

    EXPECT_EQ(StoreQuery(store).MessagesByFolder(),
              (std::map<std::string, int64_t>{{"x", 1}, {"X (2)", 2}, {"x (3)", 1}}));
}

TEST_F(MailImport, AddsToAStoreThatIsThere)
{
    directory.Write("ham.mbox", Mbox(3));
    ASSERT_EQ(Import({Path("ham.mbox")}).exitCode, 0);

    const ChildResult again = Import({Path("ham.mbox")});

    ASSERT_EQ(again.exitCode, 0) << again.errors;
    StoreQuery query(store);
    EXPECT_EQ(query.MessagesByFolder(), (std::map<std::string, int64_t>{{"ham", 6}}));
    EXPECT_EQ(query.Number("SELECT content_change_number FROM folder WHERE name = 'ham'"), 2);
}

TEST_F(MailImport, SaysWhatItSkipped)
{
    directory.Write("tree/a.eml", mail);
    directory.Write("tree/README", "read me\n");

    const ChildResult result = Import({Path("tree")});

    ASSERT_EQ(result.exitCode, 0);
    EXPECT_NE(result.output.find("README: no mail"), std::string::npos) << result.output;
}

TEST_F(MailImport, CannotBeUsedWithoutAStoreAndMail)
{
    ExpectFailure(RunProgram("mailimport", {}), 1);
    ExpectFailure(RunProgram("mailimport", {store.string()}), 1);
    ExpectFailure(RunProgram("mailimport", {"--what", store.string(), "x"}), 1);
}

TEST_F(MailImport, ShowsHelpAndVersion)
{
    const ChildResult help = RunProgram("mailimport", {"--help"});
    const ChildResult version = RunProgram("mailimport", {"--version"});

    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("OUT.db MAIL..."), std::string::npos);
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.output.starts_with("mailimport ")) << version.output;
}

TEST_F(MailImport, LeavesAFileThatIsNoStoreAsItIs)
{
    directory.Write("ham.mbox", Mbox(1));
    for (const std::string& content :
         {std::string("my precious text\n"), std::string(), std::string(8192, 'x')})
    {
        directory.Write("out/store.db", content);

        const ChildResult result = Import({Path("ham.mbox")});

        ExpectFailure(result);
        EXPECT_EQ(Bytes(store), content);
    }
}

TEST_F(MailImport, LeavesAStoreOfAnotherVersionAsItIs)
{
    directory.Write("ham.mbox", Mbox(1));
    ASSERT_EQ(Import({Path("ham.mbox")}).exitCode, 0);
    Database(store).Execute("PRAGMA user_version = 2");
    const std::string before = Bytes(store);

    ExpectFailure(Import({Path("ham.mbox")}));

    EXPECT_EQ(Bytes(store), before);
}

TEST_F(MailImport, ImportsNothingWhenOneSourceIsDamaged)
{
    directory.Write("ham.mbox", Mbox(1));
    directory.Write("bad.mbox", "no separator\n\nand no header\n");

    const ChildResult result = Import({Path("ham.mbox"), Path("bad.mbox")});

    ExpectFailure(result);
    EXPECT_NE(result.errors.find("bad.mbox"), std::string::npos) << result.errors;
    EXPECT_FALSE(fs::exists(store));
}

TEST_F(MailImport, CannotReadWhatIsMissing)
{
    ExpectFailure(Import({Path("nowhere")}));
}

TEST_F(MailImport, CannotWriteIntoADirectoryThatIsMissing)
{
    directory.Write("ham.mbox", Mbox(1));

    const ChildResult result = RunProgram("mailimport", {Path("no/such/store.db"), Path("ham.mbox")});

    ExpectFailure(result);
}

TEST_F(MailImport, ImportsNothingWhenADirectoryMayNotBeRead)
{
    directory.Write("tree/a.eml", mail);
    directory.Write("tree/closed/b.eml", mail);
    fs::permissions(directory.Path(), fs::perms::all);
    fs::permissions(store.parent_path(), fs::perms::all);
    fs::permissions(directory.Path() / "tree/closed", fs::perms::none);
    const ChildOptions nobody{.fileSizeLimit = {}, .withoutPrivileges = true};
    if (RunProgram("mailimport", {"--version"}, nobody).exitCode != 0)
        GTEST_SKIP() << "another user may not run the program here";

    const ChildResult result = Import({Path("tree")}, nobody);

    fs::permissions(directory.Path() / "tree/closed", fs::perms::owner_all);
    ExpectFailure(result);
    EXPECT_NE(result.errors.find("closed"), std::string::npos) << result.errors;
    EXPECT_FALSE(fs::exists(store));
}

TEST_F(MailImport, ImportsNothingWhenAMessageMayNotBeRead)
{
    directory.Write("list/cur/1.a:2,S", mail);
    const fs::path closed = directory.Write("list/cur/2.a:2,S", mail);
    fs::permissions(directory.Path(), fs::perms::all);
    fs::permissions(store.parent_path(), fs::perms::all);
    fs::permissions(closed, fs::perms::none);
    const ChildOptions nobody{.fileSizeLimit = {}, .withoutPrivileges = true};
    if (RunProgram("mailimport", {"--version"}, nobody).exitCode != 0)
        GTEST_SKIP() << "another user may not run the program here";

    const ChildResult result = Import({Path("list")}, nobody);

    ExpectFailure(result);
    EXPECT_FALSE(fs::exists(store));
}

TEST_F(MailImport, LeavesNothingWhenANewStoreCannotBeWrittenWhole)
{
    directory.Write("ham.mbox", Mbox(500, 4000));

    const ChildResult result = Import({Path("ham.mbox")}, {.fileSizeLimit = 500'000});

    ExpectFailure(result);
    EXPECT_FALSE(fs::exists(store));
}

TEST_F(MailImport, LeavesAStoreAsItWasWhenItCannotGrow)
{
    directory.Write("few.mbox", Mbox(2));
    directory.Write("many.mbox", Mbox(500, 4000));
    ASSERT_EQ(Import({Path("few.mbox")}).exitCode, 0);

    const ChildResult result = Import({Path("many.mbox")}, {.fileSizeLimit = 500'000});

    ExpectFailure(result);
    StoreQuery query(store);
    EXPECT_EQ(query.Text("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(query.MessagesByFolder(), (std::map<std::string, int64_t>{{"few", 2}}));
}

// A file system of a few megabytes, where the test may mount one.
class FullDisk : public MailImport
{
protected:
    void SetUp() override
    {
        MailImport::SetUp();
        mounted = mount("tmpfs", store.parent_path().c_str(), "tmpfs", 0, "size=4m") == 0;
        if (!mounted)
            GTEST_SKIP() << "this user may not mount a small file system";
    }

    void TearDown() override
    {
        if (mounted)
            umount(store.parent_path().c_str());
    }

    bool mounted = false;
};

TEST_F(FullDisk, LeavesNothingOfANewStore)
{
    directory.Write("many.mbox", Mbox(1500, 4000));

    const ChildResult result = Import({Path("many.mbox")});

    ExpectFailure(result);
    EXPECT_NE(result.errors.find("store.db: database or disk is full"), std::string::npos) << result.errors;
    EXPECT_FALSE(fs::exists(store));
}

TEST_F(FullDisk, LeavesAnExistingStoreAsItWas)
{
    directory.Write("few.mbox", Mbox(2));
    directory.Write("many.mbox", Mbox(1500, 4000));
    ASSERT_EQ(Import({Path("few.mbox")}).exitCode, 0);
    const std::string before = Bytes(store);

    const ChildResult result = Import({Path("many.mbox")});

    ExpectFailure(result);
    EXPECT_EQ(Bytes(store), before);
}

class StoppedMailImport : public MailImport, public testing::WithParamInterface<int>
{
protected:
    // The source is long enough that the signal comes while it is being written.
    ChildResult StopInTheMiddle()
    {
        directory.Write("huge.mbox", Mbox(15'000, 2000));
        ChildProcess process("mailimport", {store.string(), Path("huge.mbox")});
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!HasBegunToWrite() && process.IsRunning() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        process.Signal(GetParam());
        return process.Wait();
    }

    // The new store's own file or the existing one's journal lies beside the store.
    bool HasBegunToWrite() const
    {
        return std::ranges::any_of(fs::directory_iterator(store.parent_path()),
                                   [&](const fs::directory_entry& entry) { return entry.path() != store; });
    }
};

TEST_P(StoppedMailImport, LeavesNothingOfANewStore)
{
    const ChildResult result = StopInTheMiddle();

    ExpectFailure(result, 128 + GetParam());
    EXPECT_FALSE(fs::exists(store));
}

TEST_P(StoppedMailImport, LeavesAnExistingStoreAsItWas)
{
    directory.Write("few.mbox", Mbox(2));
    ASSERT_EQ(Import({Path("few.mbox")}).exitCode, 0);

    const ChildResult result = StopInTheMiddle();

    ExpectFailure(result, 128 + GetParam());
    EXPECT_EQ(StoreQuery(store).MessagesByFolder(), (std::map<std::string, int64_t>{{"few", 2}}));
}

INSTANTIATE_TEST_SUITE_P(Signals, StoppedMailImport, testing::Values(SIGINT, SIGTERM));
