#include "localmapi/storage/MessageColumns.h"

#include <algorithm>

namespace
{
constexpr MessageColumn columns[] = {
    {tag::storedMessageId, "r.id", nullptr, true},
    {tag::storedFolderId, "r.folder_id", nullptr, true},
    {tag::messageClass, "r.message_class", "message_class", true},
    {tag::subject, "r.subject", "subject", true},
    {tag::senderName, "r.sender_name", "sender_name", false},
    {tag::senderAddressType, "r.sender_address_type", "sender_address_type", false},
    {tag::senderEmailAddress, "r.sender_address", "sender_address", false},
    {tag::displayTo, "r.display_to", "display_to", true},
    {tag::displayCc, "r.display_cc", "display_cc", true},
    {tag::displayBcc, "r.display_bcc", "display_bcc", true},
    {tag::clientSubmitTime, "r.client_submit_time", "client_submit_time", false},
    {tag::messageDeliveryTime, "r.delivery_time", "delivery_time", false},
    {tag::creationTime, "r.creation_time", "creation_time", false},
    {tag::lastModificationTime, "r.last_modification_time", "last_modification_time", false},
    {tag::messageFlags, "r.message_flags", "message_flags", true},
    {tag::messageSize, "r.message_size", nullptr, true},
    {tag::flagStatus, "r.flag_status", "flag_status", false},
    {tag::importance, "r.importance", "importance", false},
    {tag::hasAttach, "(r.message_flags & 16) <> 0", nullptr, true},
    {tag::transportMessageHeaders, "t.headers", nullptr, false},
    {tag::body, "t.body", nullptr, false},
};
}    // namespace

std::span<const MessageColumn> MessageColumns()
{
    return columns;
}

const MessageColumn* FindMessageColumn(std::uint32_t tag)
{
    const auto found = std::find_if(std::begin(columns), std::end(columns),
                                    [tag](const MessageColumn& column) { return column.tag == tag; });
    return found == std::end(columns) ? nullptr : found;
}

std::size_t ShortColumnCount()
{
    static const auto firstText =
        std::find_if(std::begin(columns), std::end(columns),
                     [](const MessageColumn& column) { return IsMessageText(column.tag); });
    return static_cast<std::size_t>(firstText - std::begin(columns));
}

bool IsMessageText(std::uint32_t tag)
{
    return tag == tag::body || tag == tag::transportMessageHeaders;
}
