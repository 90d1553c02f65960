#include "engine/DuplicateIds.h"

#include <gtest/gtest.h>

namespace
{
TEST(DuplicateIds, KeepTheOrderInWhichTheyWereFoundAndEachRepetition)
{
    DuplicateIds ids;

    ids.Append(L"0B");
    ids.Append(L"0A");
    ids.Append(L"0B");

    EXPECT_EQ(std::vector<std::wstring>(ids.begin(), ids.end()),
              (std::vector<std::wstring>{L"0B", L"0A", L"0B"}));
    EXPECT_EQ(ids.GetCount(), 3u);
}

TEST(DuplicateIds, AreComparedCharacterForCharacter)
{
    DuplicateIds ids;
    ids.Append(L"0AFF");

    EXPECT_TRUE(ids.Contains(L"0AFF"));
    EXPECT_FALSE(ids.Contains(L"0aff"));
    EXPECT_FALSE(ids.Contains(L"0AF"));
}

TEST(DuplicateIds, FindEachOfManyAfterTheListHasGrown)
{
    DuplicateIds ids;
    for (int i = 0; i < 10000; ++i)
        ids.Append(std::to_wstring(i));

    for (int i = 0; i < 10000; ++i)
        EXPECT_TRUE(ids.Contains(std::to_wstring(i)));
    EXPECT_FALSE(ids.Contains(L"10000"));
}

TEST(DuplicateIds, ForgetEverythingWhenCleared)
{
    DuplicateIds ids;
    ids.Append(L"0A");

    ids.Clear();

    EXPECT_TRUE(ids.IsEmpty());
    EXPECT_FALSE(ids.Contains(L"0A"));
}
}    // namespace
