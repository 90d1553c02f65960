#include "import/PlainMail.h"

#include "import/MboxReader.h"
#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <optional>

namespace fs = std::filesystem;

namespace
{
// What both ways come to for one mail; the shorter one's is empty where it leaves the mail to the library.
struct BothWays
{
    explicit BothWays(const std::string& mail)
    {
        const HeaderBlock block = FindHeaderBlock(mail);
        size_t bodyBegin = block.end;
        for (const std::string_view emptyLine : {"\r\n", "\n"})
            if (bodyBegin == block.end && std::string_view(mail).substr(block.end).starts_with(emptyLine))
                bodyBegin += emptyLine.size();
        const std::string_view bytes = mail;
        const MailHeaders headers(HeaderTextAsUtf8(bytes.substr(block.begin, block.end - block.begin)));
        plain = ReadPlainMail(bytes.substr(block.begin, bodyBegin - block.begin), headers,
                              bytes.substr(bodyBegin));
        if (block.end > block.begin)
            whole = ReadMimeContent(bytes.substr(block.begin), bytes.substr(bodyBegin));
    }

    std::optional<MimeContent> plain;
    MimeContent whole;
};

void ExpectEqual(const BothWays& ways, const std::string& mail)
{
    ASSERT_EQ(ways.plain->body, ways.whole.body) << mail;
    ASSERT_EQ(ways.plain->html, ways.whole.html) << mail;
    ASSERT_EQ(ways.plain->messageClass, ways.whole.messageClass) << mail;
    ASSERT_TRUE(ways.whole.attachments.empty()) << mail;
}
}    // namespace

class PlainMail : public testing::TestWithParam<const char*>
{
};

TEST_P(PlainMail, IsReadAsTheLibraryReadsIt)
{
    const std::string mail = GetParam();

    const BothWays ways(mail);

    ASSERT_TRUE(ways.plain) << mail;
    ExpectEqual(ways, mail);
}

INSTANTIATE_TEST_SUITE_P(
    All, PlainMail,
    testing::Values(
        "Subject: x\n\nno type\n", "Subject: x\r\nTo: y\r\n\r\nline\r\nends\r\n", "Subject: x\n\n",
        "Subject: x\n\n\n\nlines before\nand no end", "Subject: x\n folded\n\ttwice\n\nbody\n",
        "Content-Type: text/plain\n\n--not a part\n", "Content-Type: \n\nof an empty type\n",
        "Content-Transfer-Encoding: \nContent-Disposition: \n\nof nothing else either\n",
        "Content-Type: TEXT/Plain; charset=\"ISO-8859-1\"\n\n\xE9t\xE9\n",
        "Content-Type: text/plain; charset=utf-8; format=flowed\nContent-Transfer-Encoding: "
        "8bit\n\n\xC3\xA9\xFF\n",
        "Content-Type: text/plain; name=note.txt;\nContent-Disposition: inline\n\nnamed\n",
        "Content-Type: text/plain;\n charset=koi8-r\nContent-Transfer-Encoding: base64\n\n5M/C0tnKIMTFztgu\n",
        "Content-Transfer-Encoding: base64\n\nYWJj\nYWJj=\n!!\nYWJj",
        "Content-Transfer-Encoding: Quoted-Printable\n\na=3Db=\nc =20 \n=C3=A9=ZZ=\n",
        "Content-Transfer-Encoding: quoted-printable\nContent-Type: text/plain; charset=utf-8\n\n=C3=A9\r\n= "
        "\r\nx",
        "Content-Type: text/html\n\n<meta charset=\"iso-8859-1\"><p>\xE9t\xE9</p>\n",
        "Content-Type: text/html; charset=utf-8\nContent-Transfer-Encoding: "
        "quoted-printable\n\n<b>=C3=A9</b>=\n",
        "Content-Type: text/plain; charset=unknown-8bit\n\n\x93quoted\x94 \xE9\n"));

class UnusualMail : public testing::TestWithParam<const char*>
{
};

TEST_P(UnusualMail, IsLeftToTheLibrary)
{
    EXPECT_FALSE(BothWays(GetParam()).plain);
}

INSTANTIATE_TEST_SUITE_P(
    All, UnusualMail,
    testing::Values("Content-Type: multipart/mixed; boundary=b\n\n--b\n\ntext\n--b--\n",
                    "Content-Type: text/calendar\n\nBEGIN:VCALENDAR\n",
                    "Content-Type: text/plain\nContent-Disposition: attachment\n\nfile\n",
                    "Content-Type: text/plain\nContent-Type: text/html\n\ntwice\n",
                    "Content-Type: text/plain; charset*=utf-8''utf-8\n\nrfc 2231\n",
                    "Content-Type: text/plain (comment)\n\nx\n",
                    "Content-Transfer-Encoding: x-uuencode\n\nx\n", "Subject: x\nno field\nTo: y\n\nbody\n",
                    "Subject : x\n\nblank before the colon\n", "Subject: x\rlone\n\nbody\n",
                    "Subject: x\n \nTo: y\n\nbody\n", "Subject: no empty line\n",
                    "Content-Type: text/plain; charset=a; charset=b\n\nx\n"));

// The real mail beside the project, each message both ways.
TEST(PlainMails, OfTheCorpusAreReadAsTheLibraryReadsThem)
{
    const char* const corpus = std::getenv("TQODR_CORPUS");
    if (!corpus || !fs::is_directory(corpus))
        GTEST_SKIP() << "there is no folder of real mail beside the project";
    int plain = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(corpus))
    {
        if (!entry.is_regular_file())
            continue;
        MboxReader reader(entry.path(), entry.path().extension() == ".mbox" ? SeparatorRule::mailbox
                                                                            : SeparatorRule::singleMessage);
        while (const std::optional<RawMail> mail = reader.Next())
        {
            const BothWays ways(mail->bytes);
            plain += ways.plain.has_value();
            if (ways.plain)
                ExpectEqual(ways, mail->bytes);
        }
    }
    EXPECT_GT(plain, 100);
}
