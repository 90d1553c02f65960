#include "import/Text.h"

#include <gtest/gtest.h>

TEST(Text, GuessesUtf8WhenItIsValid)
{
    EXPECT_EQ(GuessUtf8("Gr\xC3\xBC\xC3\x9F"
                        "e"),
              "Gr\u00FC\u00DFe");
}

TEST(Text, GuessesWindows1252WhenItIsNotUtf8)
{
    EXPECT_EQ(GuessUtf8("5 \x80 \x93quoted\x94 caf\xE9"), "5 \u20AC \u201Cquoted\u201D caf\u00E9");
}

TEST(Text, KeepsAByteThatWindows1252LeavesOpen)
{
    EXPECT_EQ(GuessUtf8("a\x81"
                        "b\xE9"),
              "a\u0081b\u00E9");
}

TEST(Text, ReplacesNulButNotTheUtf8AroundIt)
{
    EXPECT_EQ(GuessUtf8(std::string("\xC3\xA9\0z", 4)), "\u00E9\uFFFDz");
}

TEST(Text, ReplacesEachBrokenByteOfNamedUtf8)
{
    EXPECT_EQ(DecodeCharset("a\xFF\xC3z", "UTF-8"), "a\uFFFD\uFFFDz");
}

TEST(Text, DecodesTheSupersetOfTheNamedCharset)
{
    EXPECT_EQ(DecodeCharset("\x80", "iso-8859-1"), "\u20AC");
    EXPECT_EQ(DecodeCharset("\x82\xA0\x87\x40", "Shift_JIS"), "\u3042\u2460");
    EXPECT_EQ(DecodeCharset("\xC7\xD1\xB1\xDB", "ks_c_5601-1987"), "\uD55C\uAE00");
    EXPECT_EQ(DecodeCharset("\xC4\xE3\xBA\xC3", "gb2312"), "\u4F60\u597D");
}

TEST(Text, DecodesAStatefulCharset)
{
    EXPECT_EQ(DecodeCharset("\x1B$B$3$s\x1B(B!", "iso-2022-jp"), "\u3053\u3093!");
}

TEST(Text, GuessesWhenTheCharsetIsUnknown)
{
    EXPECT_EQ(DecodeCharset("caf\xE9", "x-no-such-charset"), "caf\u00E9");
    EXPECT_EQ(DecodeCharset("caf\xC3\xA9", "us-ascii"), "caf\u00E9");
}

TEST(Text, KeepsWhatFollowsABrokenCharacter)
{
    const std::string text = DecodeCharset("\x82\xA0\xFFok", "shift_jis");

    EXPECT_TRUE(text.starts_with("\u3042")) << text;
    EXPECT_TRUE(text.ends_with("ok")) << text;
    EXPECT_TRUE(IsCleanUtf8(text));
}

TEST(Text, DropsAByteOrderMark)
{
    EXPECT_EQ(DecodeCharset("\xEF\xBB\xBFhi", "utf-8"), "hi");
}

TEST(Text, EndsEveryLineWithCrLf)
{
    EXPECT_EQ(WithCrLf("a\nb\r\nc\rd\n\n"), "a\r\nb\r\nc\r\nd\r\n\r\n");
}

TEST(Text, FoldsCaseBeyondAscii)
{
    EXPECT_EQ(CaseFolded("\u00C9lan"), CaseFolded("\u00E9LAN"));
}
