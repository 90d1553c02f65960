// Files that SQLite takes and no store of ours ever was.
#include "localmapi/storage/Folders.h"
#include "localmapi/storage/MessageDraft.h"
#include "localmapi/storage/MessageMoves.h"
#include "localmapi/storage/NamedProperties.h"
#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>

namespace
{
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

class HostileFile : public testing::Test
{
protected:
    std::optional<StoreFault> FaultOf(const std::function<void()>& step)
    {
        try
        {
            step();
            return std::nullopt;
        }
        catch (const StoreError& error)
        {
            return error.fault;
        }
    }
    std::optional<StoreFault> FaultOfOpening()
    {
        return FaultOf([&] { store.Open(); });
    }

    TemporaryStore store;
};

TEST_F(HostileFile, RunsNoTriggerOfItsOwn)
{
    const std::int64_t first = store.AddMessage(folder_id::inbox, "first");
    store.AddMessage(folder_id::inbox, "second");
    store.Run("CREATE TRIGGER gone AFTER DELETE ON message BEGIN DELETE FROM message; END");

    EXPECT_EQ(DeleteMessages(*store.Open(), folder_id::inbox, {&first, 1}), 1u);

    EXPECT_EQ(store.ReadInteger("SELECT count(*) FROM message"), 1);
}

TEST_F(HostileFile, StillDeletesWhatBelongsToAMessageWithIt)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "first");
    store.Run("INSERT INTO recipient VALUES (" + std::to_string(message) + ", 0, 1, 'Bob', NULL, NULL)");

    DeleteMessages(*store.Open(), folder_id::inbox, {&message, 1});

    EXPECT_EQ(store.ReadInteger("SELECT count(*) FROM recipient"), 0);
}

TEST_F(HostileFile, IsRefusedWhenAViewStandsInATablesPlace)
{
    store.Run("ALTER TABLE folder RENAME TO f; CREATE VIEW folder AS SELECT * FROM f");

    EXPECT_TRUE(FaultOfOpening().has_value());
}

TEST_F(HostileFile, IsRefusedWhenItComputesAColumn)
{
    store.Run("ALTER TABLE message ADD COLUMN huge AS (zeroblob(900000000))");

    EXPECT_EQ(FaultOfOpening(), StoreFault::NotAStore);
}

TEST_F(HostileFile, IsRefusedWhenItComputesADefault)
{
    store.Run("DROP TABLE recipient; CREATE TABLE recipient (message_id, row_id, type, name, address_type, "
              "address, more DEFAULT (zeroblob(900000000)))");

    EXPECT_EQ(FaultOfOpening(), StoreFault::NotAStore);
}

TEST_F(HostileFile, IsRefusedWhenItComputesWhatItIndexes)
{
    store.Run("CREATE INDEX heavy ON message (hex(zeroblob(400000000)))");

    EXPECT_EQ(FaultOfOpening(), StoreFault::NotAStore);
}

TEST_F(HostileFile, IsRefusedWhenItComputesWhichRowsItIndexes)
{
    store.Run("CREATE INDEX heavy ON message (subject) WHERE hex(zeroblob(400000000)) = subject");

    EXPECT_EQ(FaultOfOpening(), StoreFault::NotAStore);
}

TEST_F(HostileFile, ChecksNoConditionOfItsOwn)
{
    store.Run(
        "DROP TABLE named_property; CREATE TABLE named_property (id INTEGER PRIMARY KEY, guid, lid, name "
        "CHECK (hex(zeroblob(400000000)) = name))");
    const auto file = store.Open();

    const std::uint32_t id = FindNamedProperty(*file, {Blob(16, 1), std::string("Keywords")}, true);

    EXPECT_EQ(id, 0x8000u);
}

TEST_F(HostileFile, IsRefusedWhenItsRootLiesInAnotherFolder)
{
    store.Run("UPDATE folder SET parent_id = 3 WHERE id = 1");

    EXPECT_EQ(FaultOfOpening(), StoreFault::NotAStore);
}

TEST_F(HostileFile, WhoseFoldersLeadInACircleIsNotWalkedForEver)
{
    store.Run("INSERT INTO folder (id, parent_id, name) VALUES (12, 2, 'a'), (13, 12, 'b');"
              "UPDATE folder SET parent_id = 13 WHERE id = 12");
    const auto file = store.Open();

    EXPECT_EQ(FaultOf([&] { ListFolders(*file, 12, true); }), StoreFault::NotAStore);
    EXPECT_EQ(FaultOf([&] { DeleteFolder(*file, 12); }), StoreFault::NotAStore);
    EXPECT_EQ(ListFolders(*file, folder_id::root, true).size(), 10u);
}

TEST_F(HostileFile, MayHoldMessagesAsFarApartAsNumbersAre)
{
    store.Run(
        "INSERT INTO message (id, folder_id, message_class, subject, display_to, display_cc, display_bcc) "
        "VALUES (-9223372036854775808, 3, '', 'first', '', '', ''), (9223372036854775807, 3, '', 'last', "
        "'', '', '')");
    const auto file = store.Open();
    const std::vector<std::int64_t> ids = ReadMessageIds(*file, folder_id::inbox);

    const std::uint32_t subject = tag::subject;
    const std::vector<StoredValue> subjects = ReadMessageRows(*file, folder_id::inbox, ids, {&subject, 1});

    EXPECT_EQ(ids, (std::vector<std::int64_t>{smallest, largest}));
    EXPECT_EQ(subjects, (std::vector<StoredValue>{std::string("first"), std::string("last")}));
}

TEST_F(HostileFile, WithAMessageInNoFolderSaysThatItIsDamaged)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "lost");
    store.Run("PRAGMA foreign_keys = OFF; UPDATE message SET folder_id = 'nowhere'");
    const auto file = store.Open();

    EXPECT_EQ(FaultOf([&] { MessageDraft::Open(file, message); }), StoreFault::NotAStore);
}

TEST_F(HostileFile, WithTheLastAttachmentNumberTakesNoMore)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "full");
    store.Run("INSERT INTO attachment (message_id, number, method, size) VALUES (" + std::to_string(message) +
              ", 9223372036854775807, 1, 0)");
    const auto draft = MessageDraft::Open(store.Open(), message);

    EXPECT_EQ(FaultOf([&] { draft->ReserveAttachmentNumber(); }), StoreFault::Full);
}

TEST_F(HostileFile, WithSizesThatAreNoneStillTakesChanges)
{
    const std::int64_t message = store.AddMessage(folder_id::inbox, "huge");
    store.Run("INSERT INTO attachment (message_id, number, method, size) VALUES (" + std::to_string(message) +
              ", 0, 1, -9223372036854775807), (" + std::to_string(message) + ", 1, 1, -9223372036854775807)");
    const auto draft = MessageDraft::Open(store.Open(), message);
    draft->DeleteAttachment(0);
    draft->PutAttachment(1, {{}, Blob{1, 2, 3}});

    draft->Save();

    EXPECT_EQ(store.ReadInteger("SELECT message_size BETWEEN 0 AND 1000 FROM message"), 1);
}
}    // namespace
