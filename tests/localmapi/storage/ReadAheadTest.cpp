#include "localmapi/storage/ReadAhead.h"

#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageDraft.h"
#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace
{
class ReadingAhead : public testing::Test
{
protected:
    // Messages of the Inbox with the numbers from 1 on, every third one of which lies in another folder.
    void SetUp() override
    {
        store.Run("WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 600) INSERT "
                  "INTO message "
                  "(id, folder_id, message_class, subject, display_to, display_cc, display_bcc) SELECT i, "
                  "CASE WHEN i % 3 = 0 THEN 4 ELSE 3 END, 'IPM.Note', 'Subject ' || i, '', '', '' FROM n");
        store.Run("INSERT INTO message_text (message_id, headers, body) SELECT id, NULL, 'Body ' || id FROM "
                  "message "
                  "WHERE id % 5 <> 0");
    }

    std::vector<StoredValue> Open(std::int64_t id)
    {
        return ReadValues(*MessageDraft::Open(file, id), {tag::subject, tag::body});
    }

    static std::int64_t NextInInbox(std::int64_t id) { return id + id % 3; }

    std::uint64_t StatementsRun() { return file->Use()->StatementsRun(); }

    static std::vector<StoredValue> Expected(std::int64_t id)
    {
        const std::string number = std::to_string(id);
        return {"Subject " + number, id % 5 == 0 ? StoredValue() : StoredValue("Body " + number)};
    }

    TemporaryStore store;
    std::shared_ptr<StoreFile> file = store.Open();
};

TEST_F(ReadingAhead, ServesAWalkThroughAFolderWithFewStatements)
{
    Open(1);
    const std::uint64_t before = StatementsRun();

    for (std::int64_t id = 2; id <= 600; id = NextInInbox(id))
        ASSERT_EQ(Open(id), Expected(id)) << id;

    EXPECT_LT(StatementsRun() - before, 40u);
}

TEST_F(ReadingAhead, ServesAWalkThatPassesOverSomeMessagesAndOpensOthersInBetween)
{
    std::mt19937 random(1);
    Open(1);
    const std::uint64_t before = StatementsRun();

    for (std::int64_t id = 4; id <= 300; id = NextInInbox(NextInInbox(id)))
    {
        ASSERT_EQ(Open(id), Expected(id)) << id;
        if (id % 20 != 0)
            continue;
        const std::int64_t other = 301 + static_cast<std::int64_t>(random() % 300);
        ASSERT_EQ(Open(other), Expected(other)) << other;
    }

    EXPECT_LT(StatementsRun() - before, 100u);
}

TEST_F(ReadingAhead, ServesTwoWalksAtOnce)
{
    Open(1);
    Open(301);
    const std::uint64_t before = StatementsRun();

    for (std::int64_t id = 2; id <= 299; id = NextInInbox(id))
    {
        ASSERT_EQ(Open(id), Expected(id)) << id;
        ASSERT_EQ(Open(id + 300), Expected(id + 300)) << id;
    }

    EXPECT_LT(StatementsRun() - before, 100u);
}

TEST_F(ReadingAhead, ShowsAtOnceWhatAnotherProgramHasChanged)
{
    for (std::int64_t id = 1; id <= 50; ++id)
        Open(id);

    store.Run("UPDATE message SET subject = 'changed' WHERE id = 52");
    store.Run("UPDATE message_text SET body = 'changed' WHERE message_id = 53");
    store.Run("DELETE FROM message WHERE id = 56");

    EXPECT_EQ(Open(52).front(), StoredValue("changed"));
    EXPECT_EQ(Open(53).back(), StoredValue("changed"));
    EXPECT_EQ(Open(55), Expected(55));
    EXPECT_THROW(Open(56), StoreError);
    EXPECT_EQ(Open(57), Expected(57));
}

TEST_F(ReadingAhead, AgreesWithTheFileInWhateverOrderMessagesAreOpenedAndChanged)
{
    std::mt19937 random(7);
    std::int64_t id = 1;
    for (int round = 0; round < 3000; ++round)
    {
        const auto choice = random() % 100;
        id = choice < 80 ? id % 600 + 1 : 1 + static_cast<std::int64_t>(random() % 600);
        const std::string number = std::to_string(id);
        if (choice == 99)
            store.Run("UPDATE message SET subject = subject || '!' WHERE id BETWEEN " + number + " AND " +
                      number + " + 9");
        if (choice == 98)
            store.Run("UPDATE message SET folder_id = 7 - folder_id WHERE id = " + number);

        const auto draft = MessageDraft::Open(file, id);

        if (round % 10 == 0)
        {
            ASSERT_EQ(
                ReadValues(*draft, {tag::subject}).front(),
                StoredValue(ReadLines(store, "SELECT subject FROM message WHERE id = " + number).front()));
            ASSERT_EQ(draft->FolderId(),
                      store.ReadInteger("SELECT folder_id FROM message WHERE id = " + number));
        }
        ASSERT_EQ(ReadValues(*draft, {tag::body}).front(), Expected(id).back());
    }
}

TEST_F(ReadingAhead, KeepsNobodyElsesLogFromStartingOver)
{
    Open(1);
    store.Run("UPDATE message SET subject = 'changed' WHERE id = 1");
    Open(1);
    store.Run("UPDATE message SET subject = 'changed again' WHERE id = 1");

    // The first column says whether a reader stood in the way.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    std::int64_t busy = 1;
    while (busy != 0 && std::chrono::steady_clock::now() < deadline)
        busy = store.ReadInteger("PRAGMA wal_checkpoint(TRUNCATE)");

    EXPECT_EQ(busy, 0);
}
}    // namespace
