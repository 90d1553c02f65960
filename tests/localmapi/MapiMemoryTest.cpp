#include "localmapi/MapiMemory.h"

#include <mapicode.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

TEST(MapiMemory, GivesBuffersThatCanBeWrittenToTheirEnd)
{
    void* buffer = nullptr;

    const SCODE result = mapi_memory::AllocateBuffer(1000, &buffer);

    ASSERT_EQ(result, S_OK);
    std::memset(buffer, 0xab, 1000);
    EXPECT_EQ(static_cast<std::uint8_t*>(buffer)[999], 0xab);
    EXPECT_EQ(mapi_memory::FreeBuffer(buffer), static_cast<ULONG>(S_OK));
}

TEST(MapiMemory, AlignsEveryBufferForAnyType)
{
    const MapiBuffer<char> owner = MakeMapiBuffer<char>(3);

    const auto* const more = AllocateMapiArray<char>(5, owner.get());

    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(owner.get()) % alignof(std::max_align_t), 0u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(more) % alignof(std::max_align_t), 0u);
}

TEST(MapiMemory, KeepsTheOwnersBytesWhenMoreIsAllocatedOntoIt)
{
    const MapiBuffer<char> owner = MakeMapiBuffer<char>(4);
    std::memcpy(owner.get(), "abc", 4);

    for (int count = 0; count < 100; ++count)
        std::memset(AllocateMapiArray<char>(50, owner.get()), 'x', 50);

    EXPECT_STREQ(owner.get(), "abc");
}

TEST(MapiMemory, KeepsApartWhatIsAllocatedOntoOneBufferInAllSizes)
{
    const MapiBuffer<char> owner = MakeMapiBuffer<char>(4);
    std::vector<std::string> written;
    std::vector<const char*> places;

    for (const std::size_t size : {1, 40, 511, 17, 512, 513, 3, 4000, 496, 16, 100, 2})
    {
        written.emplace_back(size, static_cast<char>('a' + written.size()));
        char* const place = AllocateMapiArray<char>(size, owner.get());
        written.back().copy(place, size);
        places.push_back(place);
    }

    for (std::size_t i = 0; i < places.size(); ++i)
        EXPECT_EQ(std::string(places[i], written[i].size()), written[i]);
}

TEST(MapiMemory, RefusesToAllocateMoreWithoutAnOwner)
{
    void* buffer = &buffer;

    const SCODE result = mapi_memory::AllocateMore(10, nullptr, &buffer);

    EXPECT_EQ(result, MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(buffer, nullptr);
}

TEST(MapiMemory, RefusesANullOutParameter)
{
    EXPECT_EQ(mapi_memory::AllocateBuffer(10, nullptr), MAPI_E_INVALID_PARAMETER);
    EXPECT_EQ(mapi_memory::AllocateMore(10, nullptr, nullptr), MAPI_E_INVALID_PARAMETER);
}

TEST(MapiMemory, FreesNullWithoutComplaint)
{
    EXPECT_EQ(mapi_memory::FreeBuffer(nullptr), static_cast<ULONG>(S_OK));
}

TEST(MapiMemory, GivesZeroedBytesToTheProvider)
{
    const MapiBuffer<char> buffer = MakeMapiBuffer<char>(64);

    EXPECT_EQ(std::string(buffer.get(), 64), std::string(64, '\0'));
}

TEST(MapiMemory, RefusesSizesThatMapiCannotSay)
{
    if constexpr (sizeof(std::size_t) > sizeof(ULONG))
    {
        EXPECT_THROW(AllocateMapiBytes(std::size_t{1} << 33), std::bad_alloc);
    }
    EXPECT_THROW(MakeRowSet(static_cast<std::size_t>(-1)), std::bad_alloc);
}
