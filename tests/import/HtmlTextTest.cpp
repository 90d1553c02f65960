#include "import/HtmlText.h"

#include <gtest/gtest.h>

#include <chrono>

TEST(HtmlText, KeepsParagraphsAndLineBreaks)
{
    EXPECT_EQ(HtmlToText("<p>one\n  two</p><p>three<br>four</p>"), "one two\r\n\r\nthree\r\nfour");
}

TEST(HtmlText, DropsWhatIsNotText)
{
    EXPECT_EQ(HtmlToText("<!DOCTYPE html><head><title>T</title><style>p{}</style></head><!-- <b>no</b> -->"
                         "<script>if (a < b) x();</script>yes"),
              "yes");
}

TEST(HtmlText, DecodesEntities)
{
    EXPECT_EQ(HtmlToText("a&nbsp;&amp;&lt;b&gt; &eacute;&#233;&#xE9; &euro;&#128; R&D &unknown; &#0;x"),
              "a &<b> \u00E9\u00E9\u00E9 \u20AC\u20AC R&D &unknown; \uFFFDx");
}

TEST(HtmlText, SeparatesTheCellsOfARow)
{
    EXPECT_EQ(HtmlToText("<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>"), "a\tb\r\nc");
}

TEST(HtmlText, WritesListItemsOnLinesOfTheirOwn)
{
    EXPECT_EQ(HtmlToText("x<ul><li>one</li><li>two</li></ul>y"), "x\r\n\r\n* one\r\n* two\r\n\r\ny");
}

TEST(HtmlText, KeepsTheLinesOfPreformattedText)
{
    EXPECT_EQ(HtmlToText("<pre>a\n  b\n\nc</pre>"), "a\r\n  b\r\n\r\nc");
}

TEST(HtmlText, ReadsAttributesThatHoldATagsEnd)
{
    EXPECT_EQ(HtmlToText("<img alt=\"a > b\">text"), "text");
}

TEST(HtmlText, LeavesALoneSmallerSignAlone)
{
    EXPECT_EQ(HtmlToText("1 < 2 and <3"), "1 < 2 and <3");
}

TEST(HtmlText, KeepsWhatFollowsAnUnclosedQuote)
{
    EXPECT_EQ(HtmlToText("<a href=\"x>shown</a> end"), "shown end");
}

TEST(HtmlText, TakesNoMoreThanLinearTimeForBrokenPages)
{
    std::string page;
    for (int tag = 0; tag < 200'000; ++tag)
        page += "<a \"&";
    const auto begin = std::chrono::steady_clock::now();

    HtmlToText(page);

    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(HtmlText, GivesPlainTextBackUnchanged)
{
    const std::string text = "a < b && c > d\r\n  indented\r\n\r\nend";

    EXPECT_EQ(HtmlToText(TextToHtml(text)), text);
}

TEST(HtmlText, FindsTheCharsetInMeta)
{
    EXPECT_EQ(HtmlCharset("<META http-equiv=x content=\"text/html; charset=KOI8-R\">"), "koi8-r");
    EXPECT_EQ(HtmlCharset("<meta charset='utf-8'>"), "utf-8");
    EXPECT_EQ(HtmlCharset("<p>charset=none</p>"), "");
}
