#include "win/StringTable.h"

#include "res/resource.h"

#include <gtest/gtest.h>

namespace
{
const StringTable strings(::GetModuleHandleW(nullptr));

TEST(FormatText, PutsArgumentsInPlaceFromTheLeft)
{
    EXPECT_EQ(FormatText(L"%d of %s.", {3L, L"five"}), L"3 of five.");
}

TEST(FormatText, LeavesPercentSignsOfAnArgumentAlone)
{
    EXPECT_EQ(FormatText(L"Subject: %s|%s", {L"100%d %s", L"b"}), L"Subject: 100%d %s|b");
}

TEST(FormatText, LeavesOutAPlaceWithoutAnArgument)
{
    EXPECT_EQ(FormatText(L"a%sb", {}), L"ab");
}

TEST(FormatText, KeepsAPercentSignThatIsNoPlace)
{
    EXPECT_EQ(FormatText(L"50% %", {}), L"50% %");
}

TEST(StringTable, LoadsATextWhole)
{
    EXPECT_EQ(strings.Load(IDS_ASK_STOP), L"Do you want to stop process?");
}

TEST(StringTable, KeepsLineEndsInsideATextAsTheyStand)
{
    EXPECT_EQ(strings.Load(106), L"\r\nItem Number: %d\r\n");
    EXPECT_EQ(strings.Load(134), L"Total duplicates items: %d\n\nSelected Action: %s\n\nProcess completed.");
}

TEST(StringTable, GivesTheEmptyTextForANumberItDoesNotHave)
{
    EXPECT_EQ(strings.Load(111), L"");
}

TEST(StringTable, FormatsTheEndOfARunThatWasStopped)
{
    EXPECT_EQ(strings.Format(IDS_RUN_ABORTED, {7L}),
              L"Process aborted by user.\n\nTotal duplicates items: 7");
}
}    // namespace
