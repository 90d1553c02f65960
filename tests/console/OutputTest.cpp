#include "console/OutputStream.h"
#include "console/ProgressBar.h"
#include "console/Text.h"
#include "tests/console/Pipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{
// A pipe stands in for a redirected standard output.
class OutputTest : public testing::Test
{
protected:
    std::string ReadAll()
    {
        pipe.CloseWriteEnd();
        return pipe.ReadAll();
    }

    Pipe pipe;
    OutputStream out{pipe.GetWriteEnd()};
};
}    // namespace

TEST_F(OutputTest, WritesUtf8WithBareLineFeedsWhenRedirected)
{
    out.WriteLine(L"Gr\u00FC\u00DFe \u65E5\u672C \U0001F600");

    EXPECT_FALSE(out.IsTerminal());
    EXPECT_EQ(ReadAll(), "Gr\xC3\xBC\xC3\x9F"
                         "e \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80\n");
}

TEST_F(OutputTest, RemembersThatItsReaderIsGone)
{
    pipe.CloseReadEnd();

    out.WriteLine(L"lost");

    EXPECT_TRUE(out.HasFailed());
}

TEST_F(OutputTest, DrawsTheBarAtMostTenTimesASecond)
{
    unsigned long long now = 1000;
    ProgressBar bar(out, [&now] { return now; });

    for (int i = 0; i < 1000; ++i, ++now)
        bar.Show(i / 10, i);

    const std::string drawn = ReadAll();
    EXPECT_EQ(std::ranges::count(drawn, '\r'), 10);
    EXPECT_NE(drawn.find("90%, duplicates: 900"), std::string::npos);
}

TEST_F(OutputTest, ClearsTheWholeBarAndOnlyOnce)
{
    ProgressBar bar(out, [] { return 1ULL; });
    bar.Show(50, 7);

    bar.Clear();
    bar.Clear();

    const std::string drawn = ReadAll();
    const std::size_t second = drawn.find('\r', 1);
    const std::size_t third = drawn.find('\r', second + 1);
    EXPECT_EQ(third - second, second);
    EXPECT_EQ(third, drawn.size() - 1);
    EXPECT_EQ(drawn.substr(second + 1, third - second - 1), std::string(second - 1, ' '));
}

TEST(Text, ReplacesWhatWouldSteerATerminalOrBreakTheLine)
{
    EXPECT_EQ(OnOneLine(L"a\r\nb\tc\x1B[2Jd\u2028e\u202E"), L"a  b c [2Jd e ");
}

TEST(Text, CutsAtWholeCharactersAndSaysSo)
{
    EXPECT_EQ(Shortened(L"Minutes", 7), L"Minutes");
    EXPECT_EQ(Shortened(L"Minutes of", 7), L"Minu...");
    EXPECT_EQ(Shortened(L"ab\U0001F600\U0001F600\U0001F600", 4), L"a...");
    EXPECT_EQ(Shortened(L"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600", 4), L"\U0001F600...");
}

TEST(Text, PadsByColumnsAndNeverCuts)
{
    EXPECT_EQ(Padded(L"\U0001F600", 3), L"\U0001F600  ");
    EXPECT_EQ(Padded(L"longer", 3), L"longer");
}
