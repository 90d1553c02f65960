#include "localmapi/storage/Messages.h"

#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageChanges.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t furtherTag = 0x80010003;

StoredValue Text(const char* text)
{
    return std::string(text);
}

class Messages : public testing::Test
{
protected:
    std::vector<StoredValue> Subjects(std::int64_t folder, const std::vector<std::int64_t>& ids)
    {
        return ReadMessageRows(*file, folder, ids, std::vector{tag::subject});
    }
    StoredValue Read(std::int64_t id, std::uint32_t tag) { return ReadMessage(*file, id, {&tag, 1}).front(); }
    std::int64_t ChangeNumber(std::int64_t folder)
    {
        return store.ReadInteger("SELECT content_change_number FROM folder WHERE id = " +
                                 std::to_string(folder));
    }
    // A message that has something in every table.
    std::int64_t AddFullMessage(std::int64_t folder)
    {
        MessageChanges changes;
        changes.properties = {{tag::subject, Text("full")},
                              {tag::body, Text("the body")},
                              {tag::transportMessageHeaders, Text("From: a")},
                              {furtherTag, std::int64_t{7}}};
        changes.recipients = {{1, "Ann", Text("SMTP"), Text("ann@example.org")}};
        changes.attachments[0] = {{1, Text("a.txt"), Text("a.txt"), {}, {}, 0}, Blob{1, 2, 3}};
        return CreateMessage(*file, folder, changes);
    }
    void ExpectFull(std::int64_t id)
    {
        EXPECT_EQ(Read(id, tag::subject), Text("full"));
        EXPECT_EQ(Read(id, tag::body), Text("the body"));
        EXPECT_EQ(Read(id, furtherTag), StoredValue(std::int64_t{7}));
        EXPECT_EQ(ReadRecipients(*file, id).at(0).name, "Ann");
        EXPECT_EQ(ReadAttachments(*file, id).at(0).size, 3);
        EXPECT_EQ(ReadAttachmentData(*file, id, 0), StoredValue(Blob{1, 2, 3}));
    }

    TemporaryStore store;
    std::shared_ptr<StoreFile> file = store.Open();
};

TEST_F(Messages, AreListedInTheOrderTheyCame)
{
    const std::int64_t first = store.AddMessage(folder_id::inbox, "b");
    store.AddMessage(folder_id::outbox, "elsewhere");
    const std::int64_t second = store.AddMessage(folder_id::inbox, "a");

    EXPECT_THAT(ReadMessageIds(*file, folder_id::inbox), ElementsAre(first, second));
    EXPECT_EQ(CountMessages(*file, folder_id::inbox), 2u);
}

TEST_F(Messages, AreReadInTheOrderAskedFor)
{
    const std::int64_t a = store.AddMessage(folder_id::inbox, "a");
    const std::int64_t b = store.AddMessage(folder_id::inbox, "b");
    const std::int64_t c = store.AddMessage(folder_id::inbox, "c");

    EXPECT_THAT(Subjects(folder_id::inbox, {c, a, b}), ElementsAre(Text("c"), Text("a"), Text("b")));
    EXPECT_THAT(Subjects(folder_id::inbox, {a, b, c}), ElementsAre(Text("a"), Text("b"), Text("c")));
}

TEST_F(Messages, LeaveEmptyRowsWhereTheyAreNotInTheFolderAnyMore)
{
    const std::int64_t a = store.AddMessage(folder_id::inbox, "a");
    const std::int64_t moved = store.AddMessage(folder_id::outbox, "moved");
    const std::int64_t c = store.AddMessage(folder_id::inbox, "c");

    EXPECT_THAT(Subjects(folder_id::inbox, {a, moved, c, 99}),
                ElementsAre(Text("a"), StoredValue(), Text("c"), StoredValue()));
    EXPECT_THAT(Subjects(folder_id::inbox, {c, moved, a}), ElementsAre(Text("c"), StoredValue(), Text("a")));
}

TEST_F(Messages, AreReadFarApartToo)
{
    const std::int64_t near = store.AddMessage(folder_id::inbox, "near");
    store.Run(
        "INSERT INTO message (id, folder_id, message_class, subject, display_to, display_cc, display_bcc) "
        "VALUES (1000000, 3, 'IPM.Note', 'far', '', '', '')");

    EXPECT_THAT(Subjects(folder_id::inbox, {near, 1000000}), ElementsAre(Text("near"), Text("far")));
}

TEST_F(Messages, ReadTextsAndFurtherPropertiesBesideColumns)
{
    const std::int64_t full = AddFullMessage(folder_id::inbox);
    const std::int64_t bare = store.AddMessage(folder_id::inbox, "bare");

    const auto values = ReadMessageRows(*file, folder_id::inbox, std::vector{full, bare},
                                        std::vector{tag::body, furtherTag, tag::transportMessageHeaders});

    EXPECT_THAT(values, ElementsAre(Text("the body"), StoredValue(std::int64_t{7}), Text("From: a"),
                                    StoredValue(), StoredValue(), StoredValue()));
}

TEST_F(Messages, KeepTheirIdWhenTheyMove)
{
    const std::int64_t message = AddFullMessage(folder_id::inbox);

    const std::size_t moved = MoveMessages(*file, folder_id::inbox, {&message, 1}, folder_id::deletedItems);

    EXPECT_EQ(moved, 1u);
    EXPECT_THAT(ReadMessageIds(*file, folder_id::inbox), IsEmpty());
    EXPECT_THAT(ReadMessageIds(*file, folder_id::deletedItems), ElementsAre(message));
    ExpectFull(message);
}

TEST_F(Messages, RaiseTheNumbersOfBothFoldersWhenTheyMove)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "a");
    const std::int64_t inbox = ChangeNumber(folder_id::inbox);
    const std::int64_t outbox = ChangeNumber(folder_id::outbox);

    MoveMessages(*file, folder_id::inbox, {&message, 1}, folder_id::outbox);

    EXPECT_GT(ChangeNumber(folder_id::inbox), inbox);
    EXPECT_GT(ChangeNumber(folder_id::outbox), outbox);
}

TEST_F(Messages, StayWhereTheyAreWhenTheTargetIsGone)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "a");

    EXPECT_THROW(MoveMessages(*file, folder_id::inbox, {&message, 1}, 4711), StoreError);

    EXPECT_THAT(ReadMessageIds(*file, folder_id::inbox), ElementsAre(message));
}

TEST_F(Messages, AreCopiedWithAllTheirParts)
{
    const std::int64_t message = AddFullMessage(folder_id::inbox);

    CopyMessages(*file, folder_id::inbox, {&message, 1}, folder_id::outbox);

    const std::vector<std::int64_t> copies = ReadMessageIds(*file, folder_id::outbox);
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_NE(copies[0], message);
    ExpectFull(copies[0]);
    ExpectFull(message);
}

TEST_F(Messages, LeaveNothingBehindWhenTheyAreDeleted)
{
    const std::int64_t message = AddFullMessage(folder_id::inbox);

    DeleteMessages(*file, folder_id::inbox, {&message, 1});

    EXPECT_EQ(store.ReadInteger(
                  "SELECT (SELECT count(*) FROM message) + (SELECT count(*) FROM message_text) + (SELECT "
                  "count(*) FROM message_property) + (SELECT count(*) FROM recipient) + (SELECT count(*) "
                  "FROM attachment) + (SELECT count(*) FROM attachment_data)"),
              0);
}

TEST_F(Messages, OfAnotherFolderArePassedOver)
{
    const std::int64_t here = store.AddMessage(folder_id::inbox, "here");
    const std::int64_t there = store.AddMessage(folder_id::outbox, "there");
    const std::vector<std::int64_t> both{here, there};

    EXPECT_EQ(DeleteMessages(*file, folder_id::inbox, both), 1u);

    EXPECT_THAT(ReadMessageIds(*file, folder_id::outbox), ElementsAre(there));
}

TEST_F(Messages, AreMarkedReadAndUnread)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "a");

    SetMessagesRead(*file, folder_id::inbox, {&message, 1}, false);
    const std::int64_t unread = std::get<std::int64_t>(Read(message, tag::messageFlags));
    SetMessagesRead(*file, folder_id::inbox, {&message, 1}, true);
    const std::int64_t read = std::get<std::int64_t>(Read(message, tag::messageFlags));

    EXPECT_EQ(unread & 1, 0);
    EXPECT_EQ(read, unread | 1);
}

TEST_F(Messages, ShowTheNamesOfTheirRecipients)
{
    MessageChanges changes;
    changes.recipients = {{1, "Ann", {}, {}}, {2, "Carl", {}, {}}, {1, "Bob", {}, {}}, {3, "Dora", {}, {}}};

    const std::int64_t message = CreateMessage(*file, folder_id::inbox, changes);

    EXPECT_EQ(Read(message, tag::displayTo), Text("Ann; Bob"));
    EXPECT_EQ(Read(message, tag::displayCc), Text("Carl"));
    EXPECT_EQ(Read(message, tag::displayBcc), Text("Dora"));
}

TEST_F(Messages, KnowWhetherTheyHaveAttachments)
{
    const std::int64_t full = AddFullMessage(folder_id::inbox);
    const std::int64_t bare = store.AddMessage(folder_id::inbox, "bare");

    EXPECT_EQ(Read(full, tag::hasAttach), StoredValue(std::int64_t{1}));
    EXPECT_EQ(Read(bare, tag::hasAttach), StoredValue(std::int64_t{0}));
}

TEST_F(Messages, DoNotTakeAnothersWordForHavingAttachments)
{
    constexpr std::int64_t readWithAttachments = 1 | 16;
    MessageChanges changes;
    changes.properties[tag::messageFlags] = readWithAttachments;

    const std::int64_t message = CreateMessage(*file, folder_id::inbox, changes);

    EXPECT_EQ(Read(message, tag::messageFlags), StoredValue(std::int64_t{1}));
}

TEST_F(Messages, GrowInSizeByWhatIsAdded)
{
    const std::int64_t message = AddFullMessage(folder_id::inbox);
    const std::int64_t before = std::get<std::int64_t>(Read(message, tag::messageSize));
    MessageChanges changes;
    changes.properties[tag::body] = std::string(1000, 'x');

    UpdateMessage(*file, message, changes);

    const std::int64_t grownBy = std::get<std::int64_t>(Read(message, tag::messageSize)) - before;
    EXPECT_EQ(grownBy, 1000 - static_cast<std::int64_t>(std::string("the body").size()));
}

TEST_F(Messages, ThatAreGoneCanNeitherBeReadNorChanged)
{
    EXPECT_THROW(Read(4711, tag::subject), StoreError);
    EXPECT_THROW(UpdateMessage(*file, 4711, {}), StoreError);
}
}    // namespace
