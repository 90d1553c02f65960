#pragma once

#include "localmapi/TableSource.h"
#include "localmapi/storage/Messages.h"

#include <map>
#include <memory>
#include <vector>

// The tables of a message's recipients and attachments, and the values of one row. Tags are in the stored
// form.
std::unique_ptr<TableSource> MakeRecipientTableSource(const std::vector<Recipient>& recipients);
std::unique_ptr<TableSource> MakeAttachmentTableSource(const std::map<std::int64_t, Attachment>& attachments);

// The properties of an attachment but its content.
std::map<std::uint32_t, StoredValue> AttachmentValues(std::int64_t number, const Attachment& attachment);

// Changes one property of an attachment but its content; false when the store keeps no such property.
bool SetAttachmentValue(Attachment& attachment, std::uint32_t tag, const StoredValue& value);
