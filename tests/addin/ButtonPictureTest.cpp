#include "addin/ButtonPicture.h"

#include "tests/addin/ClipboardHolder.h"
#include "tests/addin/FakeButton.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
constexpr std::size_t side = 16;

bool Has(const FakeButton::Bits& bits, COLORREF colour)
{
    return std::ranges::find(bits, colour) != bits.end();
}

TEST(ButtonPicture, ReplacesWhatTheUserHasOnTheClipboard)
{
    PutTextOnClipboard(L"kept for later");

    EXPECT_TRUE(PutButtonPictureOnClipboard());

    EXPECT_FALSE(::IsClipboardFormatAvailable(CF_UNICODETEXT));
    EXPECT_EQ(ReadClipboardBitmap().size(), side * side);
}

TEST(ButtonPicture, TakesOnTheColoursOfTheUsersButtons)
{
    PutButtonPictureOnClipboard();

    const FakeButton::Bits bits = ReadClipboardBitmap();
    ASSERT_EQ(bits.size(), side * side);
    EXPECT_EQ(bits.front(), ::GetSysColor(COLOR_3DFACE));
    EXPECT_TRUE(Has(bits, ::GetSysColor(COLOR_3DSHADOW)));
    EXPECT_TRUE(Has(bits, ::GetSysColor(COLOR_3DLIGHT)));
    EXPECT_FALSE(Has(bits, RGB(192, 192, 192)) && ::GetSysColor(COLOR_3DFACE) != RGB(192, 192, 192));
}

TEST(ButtonPicture, LeavesTheClipboardToWhoeverHoldsIt)
{
    PutTextOnClipboard(L"kept for later");
    const ClipboardHolder holder;

    EXPECT_FALSE(PutButtonPictureOnClipboard());

    EXPECT_TRUE(::IsClipboardFormatAvailable(CF_UNICODETEXT));
}

TEST(ButtonPicture, LeavesTheClipboardOpenToOthers)
{
    PutButtonPictureOnClipboard();

    EXPECT_NO_THROW(ClipboardHolder());
}

TEST(ButtonPicture, HoldsNothingMoreAfterTwoHundredRounds)
{
    PutButtonPictureOnClipboard();
    const HandleCounts before = HandleCounts::Now();

    for (int round = 0; round < 200; ++round)
        ASSERT_TRUE(PutButtonPictureOnClipboard());

    EXPECT_EQ(HandleCounts::Now(), before);
}
}    // namespace
