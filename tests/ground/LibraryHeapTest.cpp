// The heap that each library takes its memory from.
#include "tests/faults/HeapBlocks.h"
#include "win/ModuleHandle.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <thread>
#include <vector>

namespace
{
class LibraryHeap : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(library); }

    template <typename Function>
    Function Find(const char* name) const
    {
        return reinterpret_cast<Function>(
            reinterpret_cast<void (*)()>(::GetProcAddress(library.get(), name)));
    }

    std::vector<void*> Take(std::size_t count, std::size_t size) const
    {
        std::vector<void*> blocks(count);
        for (void*& block : blocks)
            block = allocate(size);
        return blocks;
    }
    void Free(const std::vector<void*>& blocks) const
    {
        for (void* const block : blocks)
            free(block);
    }

    const ModuleHandle library{::LoadLibraryW(L"HeapProbe.dll")};
    void* (*const allocate)(std::size_t) = Find<void* (*)(std::size_t)>("Allocate");
    void (*const free)(void*) = Find<void (*)(void*)>("Free");
};

TEST_F(LibraryHeap, GivesBlocksOfEverySizeThatDoNotOverlap)
{
    for (int round = 0; round < 2; ++round)
    {
        std::vector<unsigned char*> blocks;
        for (std::size_t size = 0; size < 3000; ++size)
        {
            blocks.push_back(static_cast<unsigned char*>(allocate(size)));
            ASSERT_TRUE(blocks.back());
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % MEMORY_ALLOCATION_ALIGNMENT, 0u);
            std::memset(blocks.back(), static_cast<unsigned char>(size), size);
        }
        for (std::size_t size = 0; size < blocks.size(); ++size)
        {
            const std::vector<unsigned char> expected(size, static_cast<unsigned char>(size));
            EXPECT_EQ(std::memcmp(blocks[size], expected.data(), size), 0) << size;
            free(blocks[size]);
        }
    }
}

TEST_F(LibraryHeap, GivesAThreadTheBlockAgainThatItFreedLast)
{
    void* const block = allocate(100);
    free(block);
    std::thread(
        [&]
        {
            void* const other = allocate(100);
            EXPECT_NE(other, block);
            free(other);
        })
        .join();

    void* const again = allocate(100);

    EXPECT_EQ(again, block);
    free(again);
}

TEST_F(LibraryHeap, HasNoBlockOfMoreThanTheMemory)
{
    EXPECT_EQ(allocate(std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(allocate(std::numeric_limits<std::size_t>::max() / 2), nullptr);
}

TEST_F(LibraryHeap, FreesNothingWhenAskedTo)
{
    const std::size_t before = CountHeapBlocks();

    free(nullptr);

    EXPECT_EQ(CountHeapBlocks(), before);
}

TEST_F(LibraryHeap, LeavesTheLastError)
{
    // The first request of a thread makes more than one block.
    std::thread(
        [&]
        {
            ::SetLastError(ERROR_PATH_NOT_FOUND);
            Free(Take(2, 40));
            EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
        })
        .join();
}

TEST_F(LibraryHeap, GetsBackWhatAThreadKeptWhenItEnds)
{
    const auto useOnAThread = [&]
    {
        std::thread(
            [&]
            {
                for (const std::size_t size : {1, 64, 500, 1000, 5000})
                    Free(Take(50, size));
            })
            .join();
    };
    useOnAThread();
    const std::size_t before = CountHeapBlocks();

    for (int thread = 0; thread < 20; ++thread)
        useOnAThread();

    EXPECT_LE(CountHeapBlocks(), before);
}

TEST_F(LibraryHeap, GetsBackMostOfWhatAThreadFreesForAnother)
{
    Free(Take(1, 1000));
    const std::size_t before = CountHeapBlocks();
    std::vector<void*> blocks;
    std::thread([&] { blocks = Take(10'000, 1000); }).join();
    ASSERT_GE(CountHeapBlocks(), before + 10'000);

    Free(blocks);

    EXPECT_LT(CountHeapBlocks(), before + 200);
}
}    // namespace
