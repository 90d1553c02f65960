#include "import/MailConverter.h"
#include "import/Text.h"

#include "tests/import/ConvertedMail.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
const PropertyRecord* Property(const MailRecord& record, uint32_t tag)
{
    const auto found = std::ranges::find(record.properties, tag, &PropertyRecord::tag);
    return found != record.properties.end() ? &*found : nullptr;
}

std::vector<std::string> Recipients(const MailRecord& record)
{
    std::vector<std::string> names;
    for (const RecipientRecord& recipient : record.recipients)
        names.push_back(std::to_string(recipient.type) + " " + recipient.name + " <" + recipient.address +
                        ">");
    return names;
}

using Names = std::vector<std::string>;

constexpr uint32_t html = 0x10130102;
constexpr uint32_t messageId = 0x1035001F;
constexpr uint32_t inReplyTo = 0x1042001F;
constexpr uint32_t references = 0x1039001F;
constexpr uint32_t lastVerb = 0x10810003;
constexpr uint32_t messageStatus = 0x0E170003;
}    // namespace

TEST(Headers, AreKeptAsTheyStandInTheMail)
{
    const MailRecord record = Convert("Subject: a\n b\nX-Odd:  =?utf-8?q?c?=\nno field\n\nbody\n");

    EXPECT_EQ(record.headers, "Subject: a\r\n b\r\nX-Odd:  =?utf-8?q?c?=\r\nno field\r\n");
}

TEST(Headers, BecomeUtf8LineByLine)
{
    const MailRecord record = Convert("X-A: caf\xE9\nX-B: caf\xC3\xA9\n\n");

    EXPECT_EQ(record.headers, "X-A: caf\u00E9\r\nX-B: caf\u00E9\r\n");
}

TEST(Subject, HasItsEncodedWordsDecodedAndItsFoldsUndone)
{
    EXPECT_EQ(Convert("Subject: =?iso-8859-1?q?Gr=FC=DFe?= und\n =?utf-8?B?w6k=?= mehr\n\n").subject,
              "Gr\u00FC\u00DFe und \u00E9 mehr");
}

TEST(Subject, JoinsACharacterCutBetweenTwoWords)
{
    EXPECT_EQ(Convert("Subject: =?utf-8?B?w6nD?=\n =?utf-8?B?qQ==?=\n\n").subject, "\u00E9\u00E9");
}

TEST(Subject, IsGuessedWhenItHoldsRawBytes)
{
    EXPECT_EQ(Convert("Subject: caf\xE9\n\n").subject, "caf\u00E9");
    EXPECT_EQ(Convert("Subject: caf\xC3\xA9\n\n").subject, "caf\u00E9");
}

TEST(Subject, IsEmptyWhenThereIsNone)
{
    EXPECT_EQ(Convert("From: a@b\n\nx").subject, "");
}

TEST(Subject, IsReadBehindABlankBeforeTheColon)
{
    EXPECT_EQ(Convert("Subject  : old\n\nx").subject, "old");
}

TEST(Sender, IsTheFromAddress)
{
    const MailRecord record =
        Convert("Sender: s@example.org\nFrom: =?utf-8?q?=C3=89va?= Nagy <eva@example.org>\n\n");

    EXPECT_EQ(record.senderName, "\u00C9va Nagy");
    EXPECT_EQ(record.senderAddress, "eva@example.org");
}

TEST(Sender, IsTheSenderFieldWithoutFrom)
{
    EXPECT_EQ(Convert("Sender: Desk <s@example.org>\n\n").senderName, "Desk");
}

TEST(Sender, IsNamedByTheAddressWithoutAName)
{
    EXPECT_EQ(Convert("From: <a@example.org>\n\n").senderName, "a@example.org");
}

TEST(Sender, KeepsTextThatIsNoAddress)
{
    const MailRecord record = Convert("From: \"Broken \n\nx");

    EXPECT_NE(record.senderName.find("Broken"), std::string::npos);
}

TEST(Recipients, StandInTheirOrderWithTheirKinds)
{
    const MailRecord record = Convert("Cc: c@x\nTo: \"B, b\" <b@x>, a@x\nTo: A2 <a2@x>\nBcc: d@x\n\n");

    EXPECT_EQ(Recipients(record),
              (Names{"1 B, b <b@x>", "1 a@x <a@x>", "1 A2 <a2@x>", "2 c@x <c@x>", "3 d@x <d@x>"}));
}

TEST(Recipients, OfAGroupStandOnTheirOwn)
{
    EXPECT_EQ(Recipients(Convert("To: Team: Ann <ann@x>, bob@x;, c@x\nCc: undisclosed-recipients:;\n\n")),
              (Names{"1 Ann <ann@x>", "1 bob@x <bob@x>", "1 c@x <c@x>"}));
}

TEST(Times, ComeFromDateAndTheNewestReceived)
{
    const MailRecord record = Convert("Received: from a by b; Thu, 22 Aug 2002 12:00:00 +0000\n"
                                      "Received: from c by a; Thu, 22 Aug 2002 11:00:00 +0000\n"
                                      "Date: Thu, 22 Aug 2002 10:00:00 +0000\n\n");

    EXPECT_EQ(record.submitTime, ParseMailDate("22 Aug 2002 10:00:00 +0000"));
    EXPECT_EQ(record.deliveryTime, ParseMailDate("22 Aug 2002 12:00:00 +0000"));
}

TEST(Times, OfDeliveryFallBackToSeparatorFileAndDate)
{
    RawMail mail{
        .bytes = "Date: 22 Aug 2002 10:00:00 +0000\n\n", .flags = {}, .envelopeTime = {}, .fileTime = {}};
    EXPECT_EQ(ConvertMail(mail).deliveryTime, ParseMailDate("22 Aug 2002 10:00:00 +0000"));
    mail.fileTime = 7;
    EXPECT_EQ(ConvertMail(mail).deliveryTime, 7);
    mail.envelopeTime = 8;
    EXPECT_EQ(ConvertMail(mail).deliveryTime, 8);
}

TEST(Times, AreAbsentWhenNothingReadableIsThere)
{
    const MailRecord record = Convert("Date: yesterday\nSubject: x\n\n");

    EXPECT_EQ(record.submitTime, std::nullopt);
    EXPECT_EQ(record.deliveryTime, std::nullopt);
}

TEST(Body, IsTheDecodedTextPart)
{
    EXPECT_EQ(
        Convert(
            "Content-Type: text/plain; charset=iso-8859-1\nContent-Transfer-Encoding: quoted-printable\n\n"
            "Gr=FC=\nn\nend\n")
            .body,
        "Gr\u00FCn\r\nend\r\n");
}

TEST(Body, IsGuessedWithoutACharset)
{
    EXPECT_EQ(Convert("Subject: x\n\ncaf\xE9\n").body, "caf\u00E9\r\n");
}

TEST(Body, IsTheTextOfAnEmptyType)
{
    const std::string part = "--b\nContent-Type: \n\nof a part\n--b--\n";

    EXPECT_EQ(Convert("Content-Type: \n\nof a mail\n").body, "of a mail\r\n");
    EXPECT_EQ(Convert("Content-Type: multipart/mixed; boundary=b\n\n" + part).body, "of a part");
}

TEST(Body, IsMadeFromHtmlWhenThereIsNoText)
{
    const MailRecord record =
        Convert("Content-Type: text/html; charset=utf-8\n\n<p>one</p><p>two &amp; more</p>\n");

    EXPECT_EQ(record.body, "one\r\n\r\ntwo & more");
    ASSERT_NE(Property(record, html), nullptr);
    EXPECT_EQ(Property(record, html)->bytes, "<p>one</p><p>two &amp; more</p>\r\n");
}

TEST(Body, ComesFromThePlainOneOfTwoForms)
{
    const MailRecord record = Convert("Content-Type: multipart/alternative; boundary=b\n\n--b\n\nplain\n--b\n"
                                      "Content-Type: text/html\n\n<b>rich</b>\n--b--\n");

    EXPECT_EQ(record.body, "plain");
    ASSERT_NE(Property(record, html), nullptr);
    EXPECT_EQ(Property(record, html)->bytes, "<b>rich</b>");
    EXPECT_TRUE(record.attachments.empty());
}

TEST(Body, ComesFromTheHtmlWhenThePlainFormIsBlank)
{
    EXPECT_EQ(Convert("Content-Type: multipart/alternative; boundary=b\n\n--b\n\n \n--b\n"
                      "Content-Type: text/html\n\n<b>rich</b>\n--b--\n")
                  .body,
              "rich");
}

TEST(Body, JoinsTheTextsOfAMixedMessage)
{
    const MailRecord record = Convert(
        "Content-Type: multipart/mixed; boundary=b\n\n--b\n\none\n--b\nContent-Type: image/png\n\nx\n--b\n"
        "Content-Type: text/plain\n\nfooter\n--b--\n");

    EXPECT_EQ(record.body, "one\r\nfooter");
    EXPECT_EQ(record.attachments.size(), 1u);
}

TEST(Body, IsAllThereIsWhenThePromisedPartsAreMissing)
{
    EXPECT_EQ(Convert("Content-Type: multipart/mixed; boundary=b\n\nno parts here\n").body,
              "no parts here\r\n");
    EXPECT_EQ(Convert("Content-Type: multipart/mixed\n\nno boundary\n").body, "no boundary\r\n");
}

TEST(Body, KeepsTruncatedBase64AsFarAsItGoes)
{
    EXPECT_EQ(Convert("Content-Transfer-Encoding: base64\nSubject: x\n\naGVsbG8gd29y").body, "hello wor");
}

TEST(Body, IsTheWholeMailWhenThereIsNoHeader)
{
    const MailRecord record = Convert("just some text\n\nand more\n");

    EXPECT_EQ(record.body, "just some text\r\n\r\nand more\r\n");
    EXPECT_EQ(record.headers, "");
}

TEST(Body, HoldsNoNulAndNoBrokenUtf8)
{
    const MailRecord record = Convert("Content-Type: text/plain; charset=utf-8\nSubject: a\xFF\n\nx" +
                                      std::string(1, '\0') + "y\xC3\n");

    EXPECT_TRUE(IsCleanUtf8(record.body));
    EXPECT_EQ(record.body, "x\uFFFDy\uFFFD\r\n");
}

TEST(Mail, WithoutABodyIsKept)
{
    const MailRecord record = Convert("Subject: only this");

    EXPECT_EQ(record.subject, "only this");
    EXPECT_EQ(record.body, "");
    EXPECT_EQ(record.size, 18);
}

TEST(Mail, OfNoBytesIsKept)
{
    EXPECT_EQ(Convert("").messageClass, "IPM.Note");
}

TEST(Mail, HasItsHeadersFoundBehindRubbish)
{
    const MailRecord record = Convert("\n?? mail follows\nFrom: a@b\nSubject: found\n\nbody\n");

    EXPECT_EQ(record.subject, "found");
    EXPECT_EQ(record.body, "body\r\n");
}

TEST(Mail, NestedVeryDeepIsRead)
{
    std::string bytes = "Subject: deep\n";
    for (int depth = 0; depth < 20'000; ++depth)
        bytes += "Content-Type: multipart/mixed; boundary=b" + std::to_string(depth) + "\n\n--b" +
                 std::to_string(depth) + "\n";

    EXPECT_EQ(Convert(bytes + "\nhello\n").subject, "deep");
}

TEST(Mail, WithGroupsInGroupsWithoutEndIsRead)
{
    std::string groups = "To: ";
    for (int depth = 0; depth < 200'000; ++depth)
        groups += depth % 1000 == 999 ? "a:\n " : "a:";
    const std::string nested = "Subject: inner\n" + groups + "b@c\n\ntext\n";

    const MailRecord record =
        Convert("Content-Type: multipart/mixed; boundary=b\n" + groups + "b@c\n\n--b\n" +
                "Content-Type: message/rfc822\n\n" + nested + "--b--\n");

    ASSERT_EQ(record.attachments.size(), 1u);
    EXPECT_EQ(record.attachments[0].displayName, "inner");
}

TEST(Mail, WithManyRecipientsKeepsThemAll)
{
    std::string list = "To: ";
    for (int number = 0; number < 5000; ++number)
        list += "<u" + std::to_string(number) + "@x>,\n ";

    EXPECT_EQ(Convert(list + "<last@x>\n\ntext\n").recipients.size(), 5001u);
}

TEST(Flags, OfAMaildirBecomeTheirMapiCounterparts)
{
    const MailRecord record = ConvertMail(
        {.bytes = "Subject: x\n\n",
         .flags =
             {.read = true, .flagged = true, .trashed = true, .draft = true, .replied = true, .passed = true},
         .envelopeTime = {},
         .fileTime = {}});

    EXPECT_EQ(record.flags, 0x09);
    EXPECT_EQ(record.flagStatus, 2);
    ASSERT_NE(Property(record, lastVerb), nullptr);
    EXPECT_EQ(Property(record, lastVerb)->number, 102);
    ASSERT_NE(Property(record, messageStatus), nullptr);
    EXPECT_EQ(Property(record, messageStatus)->number, 8);
}

TEST(Flags, OfAForwardedMessageSayForward)
{
    const MailRecord record = ConvertMail(
        {.bytes = "Subject: x\n\n", .flags = {.passed = true}, .envelopeTime = {}, .fileTime = {}});

    ASSERT_NE(Property(record, lastVerb), nullptr);
    EXPECT_EQ(Property(record, lastVerb)->number, 104);
}

TEST(Flags, OfAnMboxComeFromItsStatusFields)
{
    RawMail mail{.bytes = "Status: RO\nX-Status: F\n\n", .flags = {}, .envelopeTime = {}, .fileTime = {}};
    EXPECT_EQ(ConvertMail(mail).flags, 0);
    mail.hasStatusHeaders = true;
    EXPECT_EQ(ConvertMail(mail).flags, 1);
    EXPECT_EQ(ConvertMail(mail).flagStatus, 2);
}

TEST(Properties, HoldTheThreadsIds)
{
    const MailRecord record =
        Convert("Message-ID: <3@x>\nIn-Reply-To: <2@x>\nReferences: <1@x>\n <2@x>\nImportance: High\n\n");

    ASSERT_TRUE(Property(record, messageId) && Property(record, inReplyTo) && Property(record, references));
    EXPECT_EQ(Property(record, messageId)->bytes, "<3@x>");
    EXPECT_EQ(Property(record, inReplyTo)->bytes, "<2@x>");
    EXPECT_EQ(Property(record, references)->bytes, "<1@x> <2@x>");
    EXPECT_EQ(record.importance, 2);
}
