#include "import/StoreWriter.h"

#include "import/StoreFile.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace
{
// A new store, and how many statements have been run on it since CountStatements.
class StatementCounts : public testing::Test
{
protected:
    void CountStatements()
    {
        const auto count = [](unsigned, void* counter, void*, void*)
        {
            ++*static_cast<int*>(counter);
            return 0;
        };
        sqlite3_trace_v2(file->GetDatabase().Handle(), SQLITE_TRACE_STMT, count, &statements);
    }

    static MailRecord MessageWithOneRecipient()
    {
        MailRecord mail;
        mail.subject = "Minutes";
        mail.body = "As agreed.\r\n";
        mail.recipients.push_back({1, "Anna Berg", "anna@example.org"});
        return mail;
    }

    TemporaryDirectory directory;
    std::unique_ptr<StoreFile> file = OpenStore(directory.Path() / "store.db");
    int statements = 0;
};
}    // namespace

TEST_F(StatementCounts, AMessageTakesOneForItselfItsTextAndEachRecipient)
{
    constexpr int messages = 100;
    StoreWriter writer(file->GetDatabase());
    const int64_t folder = writer.OpenFolder(StoreWriter::topFolderId, "Mail");
    const MailRecord mail = MessageWithOneRecipient();
    CountStatements();

    for (int message = 0; message < messages; ++message)
        writer.AddMessage(folder, mail);

    EXPECT_EQ(statements, 3 * messages);
}

TEST_F(StatementCounts, APropertyTakesOneMoreAndAnAttachmentTwo)
{
    StoreWriter writer(file->GetDatabase());
    const int64_t folder = writer.OpenFolder(StoreWriter::topFolderId, "Mail");
    MailRecord mail = MessageWithOneRecipient();
    mail.properties.push_back({0x1035001F, 0, "<1@example.org>"});
    mail.attachments.push_back({1, "plan.pdf", "plan.pdf", "application/pdf", "", "%PDF-1.4\n"});
    CountStatements();

    writer.AddMessage(folder, mail);

    EXPECT_EQ(statements, 6);
}

TEST_F(StatementCounts, AFolderIsMarkedAsChangedOnceForAllItsMessages)
{
    StoreWriter writer(file->GetDatabase());
    const int64_t folder = writer.OpenFolder(StoreWriter::topFolderId, "Mail");
    for (int message = 0; message < 10; ++message)
        writer.AddMessage(folder, MessageWithOneRecipient());
    CountStatements();

    writer.Finish();

    EXPECT_EQ(statements, 1);
}
