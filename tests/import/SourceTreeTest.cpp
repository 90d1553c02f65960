#include "import/SourceTree.h"
#include "import/ImportError.h"

#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

namespace fs = std::filesystem;

class SourceTree : public testing::Test
{
protected:
    SourcePlan Plan(const std::vector<fs::path>& names)
    {
        std::vector<fs::path> sources;
        for (const fs::path& name : names)
            sources.push_back(directory.Path() / name);
        return PlanSources(sources);
    }

    static std::vector<std::string> FileNames(const SourceFolder& folder)
    {
        std::vector<std::string> names;
        for (const MailFile& file : folder.files)
            names.push_back(file.path.filename().string());
        return names;
    }

    static std::vector<std::string> FolderNames(const std::vector<SourceFolder>& folders)
    {
        std::vector<std::string> names;
        for (const SourceFolder& folder : folders)
            names.push_back(folder.name);
        return names;
    }

    using Names = std::vector<std::string>;

    const std::string mail = "From: a@b\nSubject: x\n\nbody\n";
    const std::string mbox = "From a@b Thu Aug 22 12:36:23 2002\n" + mail;
    TemporaryDirectory directory;
};

TEST_F(SourceTree, NamesAFolderAfterItsMbox)
{
    directory.Write("ham.mbox", mbox);
    directory.Write("saved mail", mbox);

    EXPECT_EQ(FolderNames(Plan({"ham.mbox", "saved mail"}).folders), (Names{"ham", "saved mail"}));
}

TEST_F(SourceTree, KnowsAnMboxWhateverItsName)
{
    directory.Write("tree/notes.txt", mbox);

    const SourcePlan plan = Plan({"tree"});

    ASSERT_EQ(FolderNames(plan.folders.at(0).folders), Names{"notes.txt"});
    EXPECT_EQ(plan.folders[0].folders[0].files.at(0).kind, MailFileKind::mbox);
}

TEST_F(SourceTree, SortsAMaildirsMessagesByNameAcrossNewAndCur)
{
    directory.Write("list/cur/3.a:2,S", mail);
    directory.Write("list/cur/1.a:2,S", mail);
    directory.Write("list/new/2.a", mail);
    directory.Write("list/cur/.hidden", mail);

    const SourcePlan plan = Plan({"list"});

    ASSERT_EQ(FolderNames(plan.folders), Names{"list"});
    EXPECT_EQ(FileNames(plan.folders[0]), (Names{"1.a:2,S", "2.a", "3.a:2,S"}));
}

TEST_F(SourceTree, TakesTheTimeFromAMaildirsFileName)
{
    directory.Write("list/cur/1700000102.M102P1.host:2,S", mail);

    EXPECT_EQ(Plan({"list"}).folders.at(0).files.at(0).time, FileTimeFromUnix(1700000102));
}

TEST_F(SourceTree, PutsMaildirSubfoldersBelowEachOther)
{
    directory.Write("Inbox/cur/1.a:2,", mail);
    directory.Write("Inbox/.Lists.Build/cur/1.a:2,", mail);
    directory.Write("Inbox/.Lists/cur/1.a:2,", mail);

    const SourcePlan plan = Plan({"Inbox"});

    const SourceFolder& inbox = plan.folders.at(0);
    ASSERT_EQ(FolderNames(inbox.folders), Names{"Lists"});
    EXPECT_EQ(inbox.folders[0].files.size(), 1u);
    ASSERT_EQ(FolderNames(inbox.folders[0].folders), Names{"Build"});
    EXPECT_EQ(inbox.folders[0].folders[0].files.size(), 1u);
}

TEST_F(SourceTree, MakesADirectoryOfMessageFilesAFolder)
{
    directory.Write("tree/b.eml", mail);
    directory.Write("tree/A.EML", mail);
    directory.Write("tree/sub/c.eml", mail);
    directory.Write("tree/sub/box", mbox);

    const SourcePlan plan = Plan({"tree"});

    const SourceFolder& tree = plan.folders.at(0);
    EXPECT_EQ(FileNames(tree), (Names{"A.EML", "b.eml"}));
    ASSERT_EQ(FolderNames(tree.folders), Names{"sub"});
    EXPECT_EQ(FileNames(tree.folders[0]), Names{"c.eml"});
    EXPECT_EQ(FolderNames(tree.folders[0].folders), Names{"box"});
}

TEST_F(SourceTree, PutsSingleMessagesIntoTheFolderOfTheirDirectory)
{
    directory.Write("tree/a.eml", mail);
    directory.Write("tree/b.eml", mail);

    const SourcePlan plan = Plan({"tree/a.eml", "tree/b.eml"});

    ASSERT_EQ(FolderNames(plan.folders), Names{"tree"});
    EXPECT_EQ(FileNames(plan.folders[0]), (Names{"a.eml", "b.eml"}));
}

TEST_F(SourceTree, SkipsWhatIsNoMailAndSaysWhy)
{
    directory.Write("tree/a.eml", mail);
    directory.Write("tree/README", "From here on: read me\n\nSubject: none\n");
    directory.Write("tree/empty.eml", "");
    directory.Write("tree/picture.png", std::string("\x89PNG\r\n\x1A\n\0", 9));

    const SourcePlan plan = Plan({"tree"});

    EXPECT_EQ(FileNames(plan.folders.at(0)), Names{"a.eml"});
    ASSERT_EQ(plan.skipped.size(), 3u);
    for (const SkippedFile& file : plan.skipped)
        EXPECT_FALSE(file.reason.empty());
}

TEST_F(SourceTree, EndsWhereLinksLeadInCircles)
{
    directory.Write("tree/a.eml", mail);
    fs::create_directory_symlink("..", directory.Path() / "tree/loop");
    fs::create_symlink("self", directory.Path() / "tree/self");

    const SourcePlan plan = Plan({"tree"});

    EXPECT_EQ(FileNames(plan.folders.at(0)), Names{"a.eml"});
}

TEST_F(SourceTree, DoesNotWaitForAPipe)
{
    directory.Write("tree/a.eml", mail);
    ASSERT_EQ(mkfifo((directory.Path() / "tree/pipe.eml").c_str(), 0600), 0);

    const SourcePlan plan = Plan({"tree"});

    EXPECT_EQ(plan.skipped.size(), 1u);
    EXPECT_THROW(Plan({"tree/pipe.eml"}), ImportError);
}

TEST_F(SourceTree, ReportsAMaildirsUnfinishedDeliveries)
{
    directory.Write("list/cur/1.a:2,S", mail);
    directory.Write("list/tmp/2.a", mail);

    const SourcePlan plan = Plan({"list"});

    EXPECT_EQ(plan.folders.at(0).files.size(), 1u);
    EXPECT_EQ(plan.skipped.size(), 1u);
}

TEST_F(SourceTree, RefusesASourceThatIsNoMail)
{
    directory.Write("text", "hello\n");
    directory.Write("broken.mbox", "lorem ipsum\n\ndolor\n");
    fs::create_directory(directory.Path() / "bare");

    EXPECT_THROW(Plan({"text"}), ImportError);
    EXPECT_THROW(Plan({"broken.mbox"}), ImportError);
    EXPECT_THROW(Plan({"bare"}), ImportError);
    EXPECT_THROW(Plan({"missing"}), ImportError);
}

TEST_F(SourceTree, TakesAnEmptyMboxAsAnEmptyFolder)
{
    directory.Write("none.mbox", "");

    const SourcePlan plan = Plan({"none.mbox"});

    EXPECT_EQ(FolderNames(plan.folders), Names{"none"});
}

TEST_F(SourceTree, TakesASourceNamedTwiceOnce)
{
    directory.Write("ham.mbox", mbox);
    directory.Write("list/cur/1.a:2,S", mail);

    const SourcePlan plan = Plan({"ham.mbox", "list", "list/", "ham.mbox"});

    EXPECT_EQ(FolderNames(plan.folders), (Names{"ham", "list"}));
    EXPECT_EQ(plan.skipped.size(), 2u);
}

TEST(MaildirNames, GiveTheFlags)
{
    const MailFlags flags = ParseMaildirFlags("1.a:2,DFPRST");
    const MailFlags none = ParseMaildirFlags("1.SFT");

    EXPECT_TRUE(flags.draft && flags.flagged && flags.passed && flags.replied && flags.read && flags.trashed);
    EXPECT_FALSE(none.draft || none.flagged || none.passed || none.replied || none.read || none.trashed);
}

TEST(MaildirNames, AreDecodedFromModifiedUtf7)
{
    using Names = std::vector<std::string>;

    EXPECT_EQ(ParseMaildirFolderName(".Entw&APw-rfe.R&-D"), (Names{"Entw\u00FCrfe", "R&D"}));
    EXPECT_EQ(ParseMaildirFolderName(".&U,BTFw-"), Names{"\u53F0\u5317"});
    EXPECT_EQ(ParseMaildirFolderName(".a &b"), Names{"a &b"});
    EXPECT_EQ(ParseMaildirFolderName(".."), Names{});
}
