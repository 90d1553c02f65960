#include "localmapi/storage/Folders.h"

#include "localmapi/storage/MessageChanges.h"
#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

class Folders : public testing::Test
{
protected:
    std::int64_t Create(std::int64_t parent, const std::string& name)
    {
        return CreateFolder(*file, parent, name, {});
    }
    StoredValue Read(std::int64_t id, std::uint32_t tag)
    {
        return ReadFolderRows(*file, {&id, 1}, {&tag, 1}).front();
    }
    std::vector<std::string> Names(std::int64_t parent, bool deep)
    {
        std::vector<std::string> names;
        for (const FolderPlace& place : ListFolders(*file, parent, deep))
            names.push_back(std::string(static_cast<std::size_t>(place.depth), '>') +
                            std::get<std::string>(Read(place.id, tag::displayName)));
        return names;
    }
    template <typename Action>
    StoreFault FaultOf(Action action)
    {
        try
        {
            action();
        }
        catch (const StoreError& error)
        {
            return error.fault;
        }
        return StoreFault::Other;
    }

    TemporaryStore store;
    std::shared_ptr<StoreFile> file = store.Open();
};

TEST_F(Folders, ListsTheChildrenInTheOrderTheyWereMade)
{
    const std::int64_t parent = Create(folder_id::inbox, "Lists");
    Create(parent, "Zebra");
    Create(parent, "Apple");

    EXPECT_THAT(Names(parent, false), ElementsAre("Zebra", "Apple"));
}

TEST_F(Folders, ListsATreeParentsFirstWithEachBranchTogether)
{
    const std::int64_t first = Create(folder_id::inbox, "First");
    const std::int64_t second = Create(folder_id::inbox, "Second");
    Create(second, "Below second");
    const std::int64_t below = Create(first, "Below first");
    Create(below, "Deep");

    EXPECT_THAT(Names(folder_id::inbox, true),
                ElementsAre("First", ">Below first", ">>Deep", "Second", ">Below second"));
}

TEST_F(Folders, KnowsTheRootAsItsOwnParent)
{
    EXPECT_EQ(Read(folder_id::root, tag::storedParentId), StoredValue(folder_id::root));
    EXPECT_EQ(Read(folder_id::inbox, tag::storedParentId), StoredValue(folder_id::ipmSubtree));
}

TEST_F(Folders, CountsMessagesAndUnreadOnes)
{
    const std::int64_t folder = Create(folder_id::inbox, "Lists");
    MessageChanges unread;
    unread.properties[tag::messageFlags] = std::int64_t{0};
    CreateMessage(*file, folder, unread);
    store.AddMessage(folder, "read");

    EXPECT_EQ(Read(folder, tag::contentCount), StoredValue(std::int64_t{2}));
    EXPECT_EQ(Read(folder, tag::contentUnread), StoredValue(std::int64_t{1}));
}

TEST_F(Folders, RefusesASecondFolderOfAName)
{
    Create(folder_id::inbox, "Lists");

    EXPECT_EQ(FaultOf([&] { Create(folder_id::inbox, "lists"); }), StoreFault::NameTaken);
}

TEST_F(Folders, FindsAFolderWhateverTheCaseOfItsName)
{
    const std::int64_t made = Create(folder_id::inbox, "Lists");

    EXPECT_EQ(FindFolder(*file, folder_id::inbox, "LISTS"), made);
    EXPECT_EQ(FindFolder(*file, folder_id::outbox, "Lists"), 0);
}

TEST_F(Folders, GivesANewFolderItsParentsClass)
{
    const std::int64_t plain = Create(folder_id::ipmSubtree, "Archive");
    const std::int64_t tasks = Create(folder_id::tasks, "Later");

    EXPECT_EQ(Read(plain, tag::containerClass), StoredValue(std::string("IPF.Note")));
    EXPECT_EQ(Read(tasks, tag::containerClass), StoredValue(std::string("IPF.Task")));
}

TEST_F(Folders, ShowsAnotherCommitTimeAfterEveryChangeOfTheContents)
{
    const StoredValue before = Read(folder_id::inbox, tag::localCommitTimeMax);
    store.AddMessage(folder_id::inbox, "one");
    const StoredValue afterFirst = Read(folder_id::inbox, tag::localCommitTimeMax);
    store.AddMessage(folder_id::inbox, "two");

    EXPECT_NE(afterFirst, before);
    EXPECT_NE(Read(folder_id::inbox, tag::localCommitTimeMax), afterFirst);
}

TEST_F(Folders, DeletesAFolderWithAllThatIsInIt)
{
    const std::int64_t folder = Create(folder_id::inbox, "Lists");
    const std::int64_t below = Create(folder, "Below");
    MessageChanges changes;
    changes.attachments[0] = {{}, Blob{1, 2, 3}};
    CreateMessage(*file, below, changes);

    DeleteFolder(*file, folder);

    EXPECT_THAT(Names(folder_id::inbox, true), IsEmpty());
    EXPECT_EQ(
        store.ReadInteger("SELECT (SELECT count(*) FROM message) + (SELECT count(*) FROM attachment_data)"),
        0);
}

TEST_F(Folders, KeepsTheSpecialFolders)
{
    store.AddMessage(folder_id::inbox, "kept");

    EXPECT_EQ(FaultOf([&] { DeleteFolder(*file, folder_id::inbox); }), StoreFault::NotAllowed);
    EXPECT_EQ(FaultOf([&] { EmptyFolder(*file, folder_id::root); }), StoreFault::NotAllowed);
    EXPECT_EQ(Read(folder_id::inbox, tag::contentCount), StoredValue(std::int64_t{1}));
}

TEST_F(Folders, EmptiesAFolderAndKeepsTheFolder)
{
    Create(folder_id::deletedItems, "Old");
    store.AddMessage(folder_id::deletedItems, "gone");

    EmptyFolder(*file, folder_id::deletedItems);

    EXPECT_THAT(Names(folder_id::deletedItems, true), IsEmpty());
    EXPECT_EQ(Read(folder_id::deletedItems, tag::contentCount), StoredValue(std::int64_t{0}));
}

TEST_F(Folders, RenamesAFolder)
{
    const std::int64_t folder = Create(folder_id::inbox, "Lists");

    UpdateFolder(*file, folder, {{tag::displayName, std::string("Letters")}});

    EXPECT_EQ(Read(folder, tag::displayName), StoredValue(std::string("Letters")));
}

TEST_F(Folders, SaysNothingOfAFolderThatIsGone)
{
    EXPECT_EQ(Read(4711, tag::displayName), StoredValue());
    EXPECT_EQ(FaultOf([&] { DeleteFolder(*file, 4711); }), StoreFault::NoSuchFolder);
    EXPECT_EQ(FaultOf([&] { Create(4711, "orphan"); }), StoreFault::NoSuchFolder);
}
}    // namespace
