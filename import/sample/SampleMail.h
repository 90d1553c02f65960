#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SamplePerson
{
    std::string name;
    std::string address;
};

struct SampleAttachment
{
    std::string fileName;
    std::string mimeType;
    std::string data;
};

// One message to be written. Text is UTF-8 with LF line ends; `charset` and `transferEncoding` say how it is
// sent.
struct SampleMail
{
    SamplePerson from;
    std::vector<SamplePerson> to;
    std::vector<SamplePerson> cc;
    std::string subject;
    int64_t sentAt = 0;    // seconds since 1970 UTC
    int zoneHours = 0;
    std::string messageId;    // without brackets
    std::vector<std::string> references;
    std::vector<std::string> relays;    // host names, the newest first: one Received field each
    std::string listId;
    std::string importance;
    std::string text;
    std::string html;    // with text: an alternative; without: the whole message
    std::string charset = "us-ascii";
    std::string transferEncoding = "7bit";
    std::string calendar;
    std::vector<SampleAttachment> attachments;
};

// The message as a file holds it, with LF line ends.
std::string WriteSampleMail(const SampleMail& mail);

// "Mon, 02 Jan 2023 15:04:05 +0100".
std::string WriteSampleDate(int64_t seconds, int zoneHours);
