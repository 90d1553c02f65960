#include "quorvex/FolderSnapshotCache.h"

#include "tests/quorvex/FolderFixture.h"

#include <windows.h>

#include <string>
#include <thread>

namespace
{
constexpr ULONG commitTimeTag = 0x670A0040;

class FolderSnapshotCacheTest : public testing::Test
{
protected:
    ~FolderSnapshotCacheTest() override
    {
        cache.InvalidateAll();
        object.Reset();
        EXPECT_EQ(fake::LiveObjects::count, 0);
        EXPECT_EQ(FakeMapiMemory::Outstanding(), 0u);
    }

    void Add() { fake::AddMessage(*folder, {}); }
    std::shared_ptr<FolderSnapshot> Get() { return cache.Get(object.Get(), id); }
    std::size_t Count() { return cache.CountOf(object.Get(), id); }

    FakeMapiMemory memory;
    std::shared_ptr<fake::Folder> folder = std::make_shared<fake::Folder>();
    Microsoft::WRL::ComPtr<fake::FakeFolder> object = fake::Make<fake::FakeFolder>(folder);
    const EntryIdBytes id{1, 2, 3};
    std::uint64_t now = 5000;
    FolderSnapshotCache cache{[this] { return now; }};
};
}    // namespace

TEST_F(FolderSnapshotCacheTest, GivesEveryoneTheSameSnapshot)
{
    EXPECT_EQ(Get(), Get());
}

TEST_F(FolderSnapshotCacheTest, KeepsFoldersApart)
{
    const EntryIdBytes other{1, 2, 4};

    EXPECT_NE(Get(), cache.Get(object.Get(), other));
}

TEST_F(FolderSnapshotCacheTest, CountsWithoutReadingRows)
{
    Add();
    Add();

    EXPECT_EQ(Count(), 2u);
    EXPECT_EQ(folder->counters->tablesOpened, 0u);
}

TEST_F(FolderSnapshotCacheTest, AsksAFolderForItsCountOnceASecondAtMost)
{
    Add();

    for (int time = 0; time < 100; ++time)
        EXPECT_EQ(Count(), 1u);

    EXPECT_EQ(folder->counters->getPropsCalls, 1u);
}

TEST_F(FolderSnapshotCacheTest, CountsTheRowsOfAFolderThatDoesNotTell)
{
    folder->hidesCount = true;
    Add();

    EXPECT_EQ(Count(), 1u);
}

TEST_F(FolderSnapshotCacheTest, NoticesWithinASecondThatMessagesCame)
{
    Add();
    const auto before = Get();
    Add();

    now += 999;
    EXPECT_EQ(Get(), before);
    now += 1;
    EXPECT_NE(Get(), before);
    EXPECT_EQ(Count(), 2u);
}

TEST_F(FolderSnapshotCacheTest, NoticesAChangeThatKeepsTheNumberOfMessages)
{
    folder->properties[commitTimeTag] = fake::FileTime{1};
    Add();
    const auto before = Get();
    folder->properties[commitTimeTag] = fake::FileTime{2};
    now += 1000;

    EXPECT_NE(Get(), before);
}

TEST_F(FolderSnapshotCacheTest, KeepsASnapshotWhoseFolderHasNotChanged)
{
    folder->properties[commitTimeTag] = fake::FileTime{1};
    Add();
    const auto before = Get();
    now += 60'000;

    EXPECT_EQ(Get(), before);
}

TEST_F(FolderSnapshotCacheTest, DropsASnapshotAtOnceWhenToldSo)
{
    const auto before = Get();

    cache.Invalidate({9});
    EXPECT_EQ(Get(), before);
    cache.Invalidate(id);
    EXPECT_NE(Get(), before);
}

TEST_F(FolderSnapshotCacheTest, LeavesADroppedSnapshotAsItWasToItsHolder)
{
    Add();
    const auto before = Get();
    ASSERT_EQ(before->Count(), 1u);
    Add();
    cache.InvalidateAll();

    EXPECT_EQ(before->Count(), 1u);
    EXPECT_EQ(Get()->Count(), 2u);
}

TEST_F(FolderSnapshotCacheTest, TellsTheSnapshotThatHasTheMessageWhatWasRead)
{
    auto otherFolder = std::make_shared<fake::Folder>();
    const auto message = fake::AddMessage(*otherFolder, {{PR_BODY_W, std::wstring(L"text")}});
    const auto otherObject = fake::Make<fake::FakeFolder>(otherFolder);
    Get()->Count();
    const auto other = cache.Get(otherObject.Get(), {7});
    other->Count();

    cache.NoteText(message->entryId, PR_BODY_W, L"text");

    EXPECT_EQ(other->Search(where::Equal(PR_BODY_W, L"text")).size(), 1u);
    EXPECT_EQ(otherFolder->counters->messagesOpened, 0u);
}

TEST_F(FolderSnapshotCacheTest, MayBeUsedByManyThreadsAtOnce)
{
    for (int number = 0; number < 200; ++number)
        fake::AddMessage(*folder, {{PR_SUBJECT_W, std::to_wstring(number % 20)}});
    const auto search = [&]
    {
        for (int number = 0; number < 20; ++number)
            EXPECT_EQ(Get()->Search(where::Equal(PR_SUBJECT_W, std::to_wstring(number).c_str())).size(), 10u);
    };

    std::thread one(search);
    std::thread two(search);
    std::thread three(
        [&]
        {
            for (int time = 0; time < 50; ++time)
                cache.InvalidateAll();
        });
    one.join();
    two.join();
    three.join();
}
