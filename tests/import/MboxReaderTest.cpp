#include "import/MboxReader.h"
#include "import/ImportError.h"

#include "tests/import/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <vector>

class Mbox : public testing::Test
{
protected:
    std::vector<RawMail> Read(const std::string& bytes, SeparatorRule rule = SeparatorRule::mailbox)
    {
        MboxReader reader(directory.Write("box", bytes), rule);
        std::vector<RawMail> mails;
        while (std::optional<RawMail> mail = reader.Next())
            mails.push_back(std::move(*mail));
        return mails;
    }

    const std::string separator = "From a@b Thu Aug 22 12:36:23 2002\n";
    TemporaryDirectory directory;
};

TEST_F(Mbox, HoldsTheMessagesBetweenItsSeparators)
{
    const auto mails = Read(separator + "Subject: 1\n\none\n\n" + separator + "Subject: 2\n\ntwo\n\n");

    ASSERT_EQ(mails.size(), 2u);
    EXPECT_EQ(mails[0].bytes, "Subject: 1\n\none\n");
    EXPECT_EQ(mails[1].bytes, "Subject: 2\n\ntwo\n");
}

TEST_F(Mbox, TakesTheTimeOfTheSeparator)
{
    const auto mails = Read(separator + "Subject: 1\n\none\n");

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].envelopeTime, FileTimeFromUnix(1030019783));
}

TEST_F(Mbox, KeepsAFirstLineThatIsNoSeparator)
{
    const auto mails = Read("a:\nb");

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].bytes, "a:\nb");
}

TEST_F(Mbox, MayEndWithoutALineEnd)
{
    const auto mails = Read(separator + "Subject: 1\n\nlast words");

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].bytes, "Subject: 1\n\nlast words");
}

TEST_F(Mbox, MayEndItsLinesWithCrLf)
{
    const auto mails = Read("From a@b Thu Aug 22 12:36:23 2002\r\nSubject: 1\r\n\r\n>From x\r\n\r\n"
                            "From a@b Thu Aug 22 12:36:23 2002\r\nSubject: 2\r\n\r\ntwo\r\n\r\n");

    ASSERT_EQ(mails.size(), 2u);
    EXPECT_EQ(mails[0].bytes, "Subject: 1\r\n\r\nFrom x\r\n");
}

TEST_F(Mbox, UndoesItsQuotingOneLevel)
{
    const auto mails =
        Read(separator + "Subject: 1\n\n>From here\n>>From there\n>>>From afar\n> From me\n>Fromage\n");

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].bytes, "Subject: 1\n\nFrom here\n>From there\n>>From afar\n> From me\n>Fromage\n");
}

TEST_F(Mbox, LeavesQuotedSeparatorsInAHeaderAlone)
{
    const auto mails = Read(separator + ">From c@d Thu Aug 22 12:36:23 2002\nSubject: 1\n\none\n");

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_TRUE(mails[0].bytes.starts_with(">From c@d"));
}

TEST_F(Mbox, DoesNotPartAMessageAtAnUnquotedSentence)
{
    const auto mails =
        Read(separator + "Subject: 1\n\none\n\nFrom here on: nothing new\n\nFrom Monday 10:00 on\nwe wait\n");

    EXPECT_EQ(mails.size(), 1u);
}

TEST_F(Mbox, PartsMessagesThatNoEmptyLineSeparates)
{
    const auto mails = Read(separator + "Subject: 1\n\none\n" + separator + "Subject: 2\n\ntwo\n");

    EXPECT_EQ(mails.size(), 2u);
}

TEST_F(Mbox, KnowsSeparatorsWithoutADate)
{
    const auto mails = Read("From a@b\nSubject: 1\n\none\n\nFrom c@d\nSubject: 2\n\ntwo\n");

    EXPECT_EQ(mails.size(), 2u);
}

TEST_F(Mbox, KeepsAMessageThatIsEmpty)
{
    const auto mails = Read(separator + "\n" + separator + "Subject: 2\n\ntwo\n\n" + separator);

    EXPECT_EQ(mails.size(), 3u);
}

TEST_F(Mbox, KeepsNulBytes)
{
    const auto mails = Read(separator + std::string("Subject: 1\n\na\0b\n", 16));

    ASSERT_EQ(mails.size(), 1u);
    EXPECT_EQ(mails[0].bytes, std::string("Subject: 1\n\na\0b\n", 16));
}

TEST_F(Mbox, IsEmptyWhenItsFileIs)
{
    EXPECT_TRUE(Read("").empty());
}

TEST_F(Mbox, IsOneMessageWhenItsFileShouldBe)
{
    const std::string bytes = separator + "Subject: 1\n\none\n\nFrom c@d\nNote: still the same\n";

    EXPECT_EQ(Read(bytes, SeparatorRule::singleMessage).size(), 1u);
}

TEST_F(Mbox, PartsLongMessagesWhereverTheReadBufferEnds)
{
    std::string bytes;
    for (int message = 0; message < 40; ++message)
        bytes +=
            separator + "Subject: x\n\n" + std::string(20'011, 'x') + "\n" + std::string(9'973, 'y') + "\n\n";

    const auto mails = Read(bytes);

    ASSERT_EQ(mails.size(), 40u);
    for (const RawMail& mail : mails)
        EXPECT_EQ(mail.bytes.size(), 12u + 20'012 + 9'974);
}

TEST_F(Mbox, CannotBeReadWhereThereIsNoFile)
{
    EXPECT_THROW(MboxReader(directory.Path() / "none", SeparatorRule::mailbox), ImportError);
}

TEST(SeparatorLine, IsNoHeaderField)
{
    EXPECT_FALSE(IsSeparatorLine("From : John Doe <j@example.org> 10:00 1 Jan 2000"));
    EXPECT_FALSE(IsSeparatorLine("From: a@b"));
    EXPECT_FALSE(IsSeparatorLine("From the desk of"));
    EXPECT_TRUE(IsSeparatorLine("From - Thu Aug 22 12:36:23 2002"));
}
