#include "quorvex/TextDigest.h"

#include "quorvex/CaseFolding.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

namespace
{
TextDigester::Key CountingKey()
{
    TextDigester::Key key;
    std::iota(key.begin(), key.end(), std::uint8_t{0});
    return key;
}

std::vector<std::uint8_t> CountingBytes(std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}
}    // namespace

// The results that the algorithm's authors publish for these inputs.
TEST(TextDigest, IsThePublishedOneOfNoBytes)
{
    const Digest digest = TextDigester(CountingKey()).OfBytes({});

    EXPECT_EQ(digest.low, 0xe6a825ba047f81a3u);
    EXPECT_EQ(digest.high, 0x930255c71472f66du);
}

TEST(TextDigest, IsThePublishedOneOfOneByte)
{
    const Digest digest = TextDigester(CountingKey()).OfBytes(CountingBytes(1));

    EXPECT_EQ(digest.low, 0x44af996bd8c187dau);
    EXPECT_EQ(digest.high, 0x45fc229b11597634u);
}

TEST(TextDigest, DependsOnEveryByteOfALongValue)
{
    const TextDigester digester;
    for (const std::size_t size : {61, 511, 512, 513, 519, 520, 1023})
    {
        std::vector<std::uint8_t> bytes = CountingBytes(size);
        const Digest before = digester.OfBytes(bytes);

        for (std::size_t place = 0; place < bytes.size(); ++place)
        {
            bytes[place] ^= 1;
            EXPECT_NE(digester.OfBytes(bytes), before) << place << " of " << size;
            bytes[place] ^= 1;
        }
    }
}

TEST(TextDigest, DependsOnTheOrderAndTheNumberOfALongValuesWords)
{
    const TextDigester digester;
    const std::vector<std::uint8_t> bytes = CountingBytes(640);
    std::vector<std::uint8_t> swapped = bytes;
    std::swap_ranges(swapped.begin(), swapped.begin() + 8, swapped.begin() + 8);

    EXPECT_NE(digester.OfBytes(swapped), digester.OfBytes(bytes));
    for (std::size_t zeros = 512; zeros < 640; ++zeros)
        EXPECT_NE(digester.OfBytes(std::vector<std::uint8_t>(zeros)),
                  digester.OfBytes(std::vector<std::uint8_t>(zeros + 1)))
            << zeros;
}

TEST(TextDigest, TellsATextFromItsBeginning)
{
    const TextDigester digester;

    EXPECT_NE(digester.OfText(L"Minutes"), digester.OfText(std::wstring_view(L"Minutes\0", 8)));
}

TEST(TextDigest, DiffersFromOneSessionToAnother)
{
    EXPECT_NE(TextDigester().OfText(L"Minutes"), TextDigester().OfText(L"Minutes"));
}

TEST(CaseFolding, AgreesWithTheSystemsOrdinalComparisonForEveryCharacter)
{
    std::wstring all;
    for (unsigned unit = 1; unit <= 0xFFFF; ++unit)
        all.push_back(static_cast<wchar_t>(unit));

    const std::wstring folded = FoldCase(all);

    ASSERT_EQ(folded.size(), all.size());
    for (std::size_t place = 0; place < all.size(); ++place)
        EXPECT_EQ(CompareStringOrdinal(&all[place], 1, &folded[place], 1, TRUE), CSTR_EQUAL) << place + 1;
}

TEST(CaseFolding, MakesTextsEqualThatDifferInCaseOnly)
{
    EXPECT_EQ(FoldCase(L"Straße Ärger Ωmega Жук"), FoldCase(L"STRAßE äRGER ωMEGA жУК"));
    EXPECT_NE(FoldCase(L"Straße"), FoldCase(L"Strasse"));
}

TEST(CaseFolding, KeepsTextsOfAnyLength)
{
    const std::wstring text((1 << 20) + 5, L'ä');

    EXPECT_EQ(FoldCase(text), std::wstring((1 << 20) + 5, L'Ä'));
    EXPECT_EQ(FoldCase(L""), L"");
}
