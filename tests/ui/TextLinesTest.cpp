#include "ui/TextLines.h"

#include "tests/ui/InstalledFolder.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
std::vector<std::wstring> AllOf(const TextLines& lines)
{
    std::vector<std::wstring> all;
    for (std::size_t line = 0; line < lines.Count(); ++line)
        all.emplace_back(lines[line]);
    return all;
}

std::vector<std::wstring> LinesOf(std::wstring_view text)
{
    return AllOf(TextLines(text));
}

class TextFile : public testing::Test
{
protected:
    TemporaryFolder folder;

    std::vector<std::wstring> Read(const std::string& bytes)
    {
        folder.Write(L"text.txt", bytes);
        return AllOf(ReadTextLines(folder.Path() + L"\\text.txt"));
    }
};

TEST(TextLines, EndInEitherLineEnd)
{
    EXPECT_THAT(LinesOf(L"one\r\ntwo\nthree"), ElementsAre(L"one", L"two", L"three"));
}

TEST(TextLines, KeepEmptyLines)
{
    EXPECT_THAT(LinesOf(L"\n\r\n\nlast"), ElementsAre(L"", L"", L"", L"last"));
}

TEST(TextLines, HaveNoFurtherLineAfterAFinalLineEnd)
{
    EXPECT_THAT(LinesOf(L"one\r\ntwo\r\n"), ElementsAre(L"one", L"two"));
    EXPECT_THAT(LinesOf(L"\n"), ElementsAre(L""));
}

TEST(TextLines, AreNoneInAnEmptyText)
{
    EXPECT_THAT(LinesOf(L""), IsEmpty());
}

TEST(TextLines, KeepACarriageReturnThatEndsNoLine)
{
    EXPECT_THAT(LinesOf(L"a\rb\r"), ElementsAre(L"a\rb\r"));
}

TEST(TextLines, ShowTabsAsBlanks)
{
    const std::vector<std::wstring> lines = LinesOf(L"\ta\t\tb\n\t");

    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].find(L'\t'), std::wstring::npos);
    EXPECT_EQ(lines[0].front(), L' ');
    EXPECT_EQ(lines[0].back(), L'b');
    EXPECT_EQ(lines[1].find_first_not_of(L' '), std::wstring::npos);
    EXPECT_FALSE(lines[1].empty());
}

TEST_F(TextFile, IsReadAsUtf8)
{
    EXPECT_THAT(Read("gr\xC3\xBC\xC3\x9F\x65\nzwei"), ElementsAre(L"gr\u00FC\u00DFe", L"zwei"));
}

TEST_F(TextFile, MayStartWithAByteOrderMark)
{
    EXPECT_THAT(Read("\xEF\xBB\xBF\xE2\x82\xAC"), ElementsAre(L"\u20AC"));
    EXPECT_THAT(Read("\xEF\xBB\xBF"), IsEmpty());
}

TEST_F(TextFile, IsReadInTheAnsiCodePageWhenItIsNoUtf8)
{
    if (::GetACP() != 1252)
        GTEST_SKIP() << "the ANSI code page is " << ::GetACP();

    EXPECT_THAT(Read("gr\xFC\xDF\x65\n\x80"), ElementsAre(L"gr\u00FC\u00DFe", L"\u20AC"));
}

TEST_F(TextFile, HasNoLinesWhenItIsEmptyMissingOrAFolder)
{
    EXPECT_THAT(Read(""), IsEmpty());
    EXPECT_THAT(AllOf(ReadTextLines(folder.Path() + L"\\missing.txt")), IsEmpty());
    EXPECT_THAT(AllOf(ReadTextLines(folder.Path())), IsEmpty());
    EXPECT_THAT(AllOf(ReadTextLines(L"")), IsEmpty());
}

TEST_F(TextFile, IsReadWholeWhenItIsLarge)
{
    const std::string longLine(10 * 1024 * 1024, 'x');

    EXPECT_THAT(Read(longLine + "\nend"), ElementsAre(std::wstring(longLine.size(), L'x'), L"end"));
}

TEST_F(TextFile, HasNoLinesWhenItIsTooLargeToBeAText)
{
    folder.Write(L"text.txt", "");
    const std::wstring path = folder.Path() + L"\\text.txt";
    folder.Enlarge(L"text.txt", 64LL * 1024 * 1024 + 1);

    EXPECT_THAT(AllOf(ReadTextLines(path)), IsEmpty());
}
}    // namespace
