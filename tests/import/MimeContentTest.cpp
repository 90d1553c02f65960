#include "tests/import/ConvertedMail.h"

#include <gtest/gtest.h>

#include <utility>

TEST(Attachment, HasItsDecodedNameTypeIdAndContent)
{
    const MailRecord record = Convert("Content-Type: multipart/mixed; boundary=b\n\n--b\n\ntext\n--b\n"
                                      "Content-Type: image/PNG; name=ignored.png\nContent-ID: <id@x>\n"
                                      "Content-Disposition: attachment; filename*=utf-8''%C3%A9t%C3%A9.png\n"
                                      "Content-Transfer-Encoding: base64\n\nAAEC\n--b--\n");

    ASSERT_EQ(record.attachments.size(), 1u);
    const AttachmentRecord& attachment = record.attachments[0];
    EXPECT_EQ(attachment.fileName, "\u00E9t\u00E9.png");
    EXPECT_EQ(attachment.displayName, "\u00E9t\u00E9.png");
    EXPECT_EQ(attachment.mimeTag, "image/png");
    EXPECT_EQ(attachment.contentId, "id@x");
    EXPECT_EQ(attachment.data, std::string("\0\1\2", 3));
    EXPECT_EQ(attachment.method, 1);
    EXPECT_TRUE(record.flags & 0x10);
}

class AttachmentName : public testing::TestWithParam<std::pair<const char*, const char*>>
{
};

TEST_P(AttachmentName, IsReadFromItsField)
{
    const MailRecord record = Convert("Content-Type: multipart/mixed; boundary=b\n\n--b\n" +
                                      std::string(GetParam().first) + "\n\nx\n--b--\n");

    ASSERT_EQ(record.attachments.size(), 1u);
    EXPECT_EQ(record.attachments[0].fileName, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    Attachment, AttachmentName,
    testing::Values(
        std::pair("Content-Disposition: attachment; filename=\"=?utf-8?B?w6k=?=.txt\"", "\u00E9.txt"),
        std::pair("Content-Disposition: attachment; filename*0*=utf-8''a%20; filename*1=b.txt", "a b.txt"),
        std::pair("Content-Type: application/pdf; name=\"C:\\\\dir\\\\plan.pdf\"", "plan.pdf"),
        std::pair("Content-Disposition: attachment; filename=\"../../etc/passwd\"", "passwd"),
        std::pair("Content-Disposition: attachment; filename=\"a/..\"", "ATT00001.txt"),
        std::pair("Content-Disposition: attachment; filename=\" . \"", "ATT00001.txt"),
        std::pair("Content-Type: application/pdf", "ATT00001.pdf"),
        std::pair("Content-Type: application/x-nobody-knows", "ATT00001.dat"),
        std::pair("Content-Disposition: attachment; filename=\"caf\xE9.txt\"", "caf\u00E9.txt")));

TEST(Attachment, OfAMessageCarriesItsSubjectAndBytes)
{
    const MailRecord record = Convert("Content-Type: multipart/mixed; boundary=b\n\n--b\n\ntext\n--b\n"
                                      "Content-Type: message/rfc822\n\nSubject: in=?utf-8?q?=C3=A9?= a/b\n"
                                      "From: x@y\n\ninner\n--b--\n");

    ASSERT_EQ(record.attachments.size(), 1u);
    const AttachmentRecord& attachment = record.attachments[0];
    EXPECT_EQ(attachment.method, 5);
    EXPECT_TRUE(attachment.displayName.ends_with("a/b")) << attachment.displayName;
    EXPECT_TRUE(attachment.fileName.ends_with("a_b.eml")) << attachment.fileName;
    EXPECT_NE(attachment.data.find("From: x@y\n\ninner"), std::string::npos) << attachment.data;
    EXPECT_EQ(record.body, "text");
}

TEST(Attachment, OfAnEncodedMessageIsDecoded)
{
    const MailRecord record = Convert("Content-Type: multipart/mixed; boundary=b\n\n--b\n"
                                      "Content-Type: message/rfc822\nContent-Transfer-Encoding: base64\n\n"
                                      "U3ViamVjdDogaW5uZXIKCmhlbGxvCg==\n--b--\n");

    ASSERT_EQ(record.attachments.size(), 1u);
    EXPECT_EQ(record.attachments[0].displayName, "inner");
    EXPECT_EQ(record.attachments[0].data, "Subject: inner\n\nhello\n");
}

struct ClassCase
{
    const char* mail;
    const char* messageClass;
};

class MessageClass : public testing::TestWithParam<ClassCase>
{
};

TEST_P(MessageClass, FollowsTheContent)
{
    EXPECT_EQ(Convert(GetParam().mail).messageClass, GetParam().messageClass);
}

INSTANTIATE_TEST_SUITE_P(
    Mail, MessageClass,
    testing::Values(
        ClassCase{"Subject: x\n\ny", "IPM.Note"},
        ClassCase{"Content-Type: text/calendar; method=REQUEST\n\nBEGIN:VCALENDAR\n",
                  "IPM.Schedule.Meeting.Request"},
        ClassCase{"Content-Type: text/calendar\n\nBEGIN:VCALENDAR\nMETHOD:CANCEL\n",
                  "IPM.Schedule.Meeting.Canceled"},
        ClassCase{
            "Content-Type: multipart/report; report-type=delivery-status; boundary=b\n\n--b\n\nsorry\n--b\n"
            "Content-Type: message/delivery-status\n\nReporting-MTA: dns;x\n\nAction: failed\n--b--\n",
            "REPORT.IPM.Note.NDR"},
        ClassCase{
            "Content-Type: multipart/report; report-type=delivery-status; boundary=b\n\n--b\n"
            "Content-Type: message/delivery-status\n\nReporting-MTA: dns;x\n\nAction: delivered\n--b--\n",
            "REPORT.IPM.Note.DR"},
        ClassCase{"Content-Type: application/pkcs7-mime; name=smime.p7m\n\nx", "IPM.Note.SMIME"},
        ClassCase{
            "Content-Type: multipart/signed; protocol=\"application/pkcs7-signature\"; boundary=b\n\n--b\n\n"
            "text\n--b\nContent-Type: application/pkcs7-signature\n\nx\n--b--\n",
            "IPM.Note.SMIME.MultipartSigned"}));
