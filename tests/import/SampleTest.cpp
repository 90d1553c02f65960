#include "import/sample/SampleMailbox.h"
#include "import/sample/SampleWriter.h"

#include "tests/import/ChildProcess.h"
#include "tests/import/StoreQuery.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace fs = std::filesystem;

// The sample written and imported by the delivered programs, once for all tests.
class Sample : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        directory = std::make_unique<TemporaryDirectory>();
        const fs::path files = directory->Path() / "mail";
        written = RunProgram("mailsample", {files.string()});
        std::vector<std::string> arguments = {(directory->Path() / "store.db").string()};
        for (const fs::directory_entry& entry : fs::directory_iterator(files))
            arguments.push_back(entry.path().string());
        imported = RunProgram("mailimport", arguments);
    }

    static void TearDownTestSuite() { directory.reset(); }

    static int Planted(CopyKind kind)
    {
        for (const PlantedCopies& planted : mailbox.planted)
            if (planted.kind == kind)
                return planted.count;
        return -1;
    }

    // How many messages repeat an earlier one in all that `columns` (of message m and message_text t) name.
    static int64_t Repeated(const std::string& columns)
    {
        return query().Number(
            "SELECT sum(number - 1) FROM (SELECT count(*) number FROM message m JOIN message_text t "
            "ON t.message_id = m.id GROUP BY " +
            columns + ")");
    }

    static StoreQuery query() { return StoreQuery(directory->Path() / "store.db"); }

    static std::string Bytes(const fs::path& path)
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return bytes.str();
    }

    static int AllPlanted()
    {
        int count = 0;
        for (const PlantedCopies& planted : mailbox.planted)
            count += planted.count;
        return count;
    }

    static inline const SampleMailbox mailbox = MakeSampleMailbox();
    static inline std::unique_ptr<TemporaryDirectory> directory;
    static inline ChildResult written;
    static inline ChildResult imported;
    static inline const std::string always = "t.body, m.subject, m.sender_address";
};

TEST_F(Sample, IsWrittenAndImportedWhole)
{
    ASSERT_EQ(written.exitCode, 0) << written.errors;
    ASSERT_EQ(imported.exitCode, 0) << imported.errors;
    std::map<std::string, int64_t> expected;
    for (const SampleFolder& folder : mailbox.folders)
        expected[folder.path] = static_cast<int64_t>(folder.mails.size());
    EXPECT_EQ(query().MessagesByFolder(), expected);
    EXPECT_GE(query().Number("SELECT count(*) FROM message"), 2000);
    EXPECT_EQ(query().Number("SELECT count(*) FROM message"), mailbox.originals + AllPlanted());
}

TEST_F(Sample, HoldsAsManyDuplicatesAsItPlanted)
{
    EXPECT_EQ(Repeated(always), AllPlanted());
}

TEST_F(Sample, HoldsDuplicatesThatOnlyTheSenderNameTellsApart)
{
    EXPECT_EQ(Repeated(always) - Repeated(always + ", m.sender_name"), Planted(CopyKind::senderName));
}

TEST_F(Sample, HoldsDuplicatesThatOnlyRecipientNamesTellApart)
{
    EXPECT_EQ(Repeated(always) -
                  Repeated(always + ", m.display_to COLLATE NOCASE, m.display_cc COLLATE NOCASE"),
              Planted(CopyKind::recipientNames));
    EXPECT_EQ(Repeated(always) - Repeated(always + ", m.display_to, m.display_cc"),
              Planted(CopyKind::recipientNames) + Planted(CopyKind::recipientCase));
}

TEST_F(Sample, HoldsDuplicatesThatOnlyTransportHeadersTellApart)
{
    EXPECT_EQ(Repeated(always + ", t.headers"),
              Planted(CopyKind::sameFolder) + Planted(CopyKind::otherFolder) +
                  Planted(CopyKind::attachmentNames) + Planted(CopyKind::emptyBody) +
                  Planted(CopyKind::emptySubject) + Planted(CopyKind::emptyBoth));
    EXPECT_EQ(query().Number("SELECT count(*) FROM message_text WHERE headers LIKE '%backup-mx%'"),
              Planted(CopyKind::transportHeaders));
}

TEST_F(Sample, HoldsDuplicatesThatOnlyAttachmentNamesTellApart)
{
    EXPECT_EQ(Repeated(always) -
                  Repeated(always + ", (SELECT group_concat(file_name, '/') FROM attachment a WHERE "
                                    "a.message_id = m.id)"),
              Planted(CopyKind::attachmentNames));
}

TEST_F(Sample, HoldsDuplicatesSentAtOtherTimes)
{
    const std::string pairs =
        "FROM message a JOIN message b ON a.id < b.id AND a.subject = b.subject AND "
        "a.sender_address = b.sender_address JOIN message_text s ON s.message_id = a.id "
        "JOIN message_text t ON t.message_id = b.id AND s.body = t.body ";
    const std::string apart = "abs(a.client_submit_time - b.client_submit_time) / 10000000";

    EXPECT_EQ(query().Number("SELECT count(*) " + pairs + "WHERE " + apart + " BETWEEN 1 AND 5"),
              Planted(CopyKind::secondsApart));
    EXPECT_EQ(query().Number("SELECT count(*) " + pairs + "WHERE " + apart + " > 60"),
              Planted(CopyKind::minutesApart));
}

TEST_F(Sample, HoldsMessagesWithoutTextAndSubject)
{
    EXPECT_EQ(query().Number("SELECT count(*) FROM message m JOIN message_text t ON t.message_id = m.id "
                             "WHERE subject = '' AND trim(body, char(13, 10)) = ''"),
              2 * Planted(CopyKind::emptyBoth));
}

TEST_F(Sample, HoldsMailOfSeveralKinds)
{
    EXPECT_GT(query().Number("SELECT count(*) FROM message WHERE message_flags & 16"), 100);
    EXPECT_GT(query().Number("SELECT count(*) FROM message_property WHERE tag = 0x10130102"), 100);
    EXPECT_GT(query().Number("SELECT count(*) FROM message WHERE subject LIKE 'Re: %'"), 300);
    EXPECT_GT(query().Number("SELECT count(*) FROM message_text WHERE body LIKE '%\u8CC7\u6599%'"), 5);
    EXPECT_GT(query().Number(
                  "SELECT count(*) FROM message_text WHERE body LIKE '%\u0433\u043E\u0442\u043E\u0432%'"),
              5);
    EXPECT_GT(query().Number("SELECT count(*) FROM message_text WHERE body LIKE '%\u20AC%'"), 5);
}

TEST_F(Sample, IsTheSameEveryTime)
{
    const TemporaryDirectory other;
    WriteSampleMailbox(mailbox, other.Path() / "mail");

    int64_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(other.Path() / "mail"))
    {
        if (!entry.is_regular_file())
            continue;
        ++files;
        const fs::path twin = directory->Path() / "mail" / fs::relative(entry.path(), other.Path() / "mail");
        EXPECT_EQ(Bytes(entry.path()), Bytes(twin)) << entry.path();
    }
    EXPECT_GT(files, 1000);
}

TEST_F(Sample, IsNotWrittenIntoADirectoryThatHoldsSomething)
{
    const TemporaryDirectory other;
    other.Write("mail/mine.txt", "mine\n");

    const ChildResult result = RunProgram("mailsample", {(other.Path() / "mail").string()});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.errors, "");
}
