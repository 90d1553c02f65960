#pragma once

#include "import/MailDate.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A message as the store keeps it. All text is clean UTF-8.

struct RecipientRecord
{
    int type = 1;    // MAPI_TO 1, MAPI_CC 2, MAPI_BCC 3
    std::string name;
    std::string address;
};

struct AttachmentRecord
{
    int method = 1;    // ATTACH_BY_VALUE 1, ATTACH_EMBEDDED_MSG 5
    std::string fileName;
    std::string displayName;
    std::string mimeTag;
    std::string contentId;
    std::string data;
};

// The type in the tag's lower half says which member holds the value.
struct PropertyRecord
{
    uint32_t tag = 0;
    int64_t number = 0;    // PT_LONG
    std::string bytes;     // PT_UNICODE as UTF-8, PT_BINARY
};

struct MailRecord
{
    std::string messageClass = "IPM.Note";
    std::string subject;
    std::string senderName;
    std::string senderAddress;
    std::string headers;
    std::string body;
    std::optional<FileTime> submitTime;
    std::optional<FileTime> deliveryTime;
    int64_t flags = 0;
    int64_t size = 0;
    std::optional<int> flagStatus;
    int importance = 1;
    std::vector<RecipientRecord> recipients;
    std::vector<AttachmentRecord> attachments;
    std::vector<PropertyRecord> properties;
};
