#include "quorvex/EntryId.h"

#include "quorvex/MapiError.h"

#include <gtest/gtest.h>

TEST(EntryId, IsShownAsTwoUpperCaseDigitsForEachByte)
{
    EXPECT_EQ(ToHex(EntryIdBytes{0x00, 0x0A, 0xFF, 0x7B}), L"000AFF7B");
}

TEST(EntryId, IsReadFromDigitsOfEitherCase)
{
    EXPECT_EQ(FromHex(L"000aFf7B"), (EntryIdBytes{0x00, 0x0A, 0xFF, 0x7B}));
}

TEST(EntryId, IsEmptyForNoText)
{
    EXPECT_EQ(FromHex(L""), EntryIdBytes());
}

TEST(EntryId, IsNotReadFromAnOddNumberOfDigits)
{
    EXPECT_THROW(FromHex(L"ABC"), MapiError);
}

TEST(EntryId, IsNotReadFromOtherCharacters)
{
    for (const wchar_t* text : {L"0G", L" 1", L"0x", L"\xFF11\xFF11"})
        EXPECT_THROW(FromHex(text), MapiError);
}
