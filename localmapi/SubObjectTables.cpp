#include "localmapi/SubObjectTables.h"

#include "localmapi/VectorTableSource.h"
#include "localmapi/storage/PropertyTag.h"

#include <windows.h>

#include <mapidefs.h>

namespace
{
constexpr std::int64_t notRenderedInText = -1;

std::string TextOf(const StoredValue& value)
{
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

StoredValue ExtensionOf(const StoredValue& fileName)
{
    const std::string name = TextOf(fileName);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? StoredValue() : StoredValue(name.substr(dot));
}

VectorTableSource::Row RecipientRow(std::int64_t rowId, const Recipient& recipient)
{
    return {{tag::rowId, rowId},
            {tag::recipientType, recipient.type},
            {tag::displayName, recipient.name},
            {tag::addressType, recipient.addressType},
            {tag::emailAddress, recipient.address},
            {tag::objectType, std::int64_t{MAPI_MAILUSER}}};
}
}    // namespace

std::unique_ptr<TableSource> MakeRecipientTableSource(const std::vector<Recipient>& recipients)
{
    std::vector<VectorTableSource::Row> rows;
    for (const Recipient& recipient : recipients)
        rows.push_back(RecipientRow(static_cast<std::int64_t>(rows.size()), recipient));
    return std::make_unique<VectorTableSource>(std::vector<std::uint32_t>{tag::rowId, tag::recipientType,
                                                                          tag::displayName, tag::addressType,
                                                                          tag::emailAddress, tag::objectType},
                                               std::move(rows));
}

std::unique_ptr<TableSource> MakeAttachmentTableSource(const std::map<std::int64_t, Attachment>& attachments)
{
    std::vector<VectorTableSource::Row> rows;
    for (const auto& [number, attachment] : attachments)
        rows.push_back(AttachmentValues(number, attachment));
    return std::make_unique<VectorTableSource>(
        std::vector<std::uint32_t>{tag::attachNum, tag::attachMethod, tag::attachFilename,
                                   tag::attachLongFilename, tag::displayName, tag::attachMimeTag,
                                   tag::attachContentId, tag::attachExtension, tag::attachSize,
                                   tag::renderingPosition},
        std::move(rows));
}

std::map<std::uint32_t, StoredValue> AttachmentValues(std::int64_t number, const Attachment& attachment)
{
    return {{tag::attachNum, number},
            {tag::attachMethod, attachment.method},
            {tag::attachFilename, attachment.fileName},
            {tag::attachLongFilename, attachment.fileName},
            {tag::displayName, attachment.displayName},
            {tag::attachMimeTag, attachment.mimeTag},
            {tag::attachContentId, attachment.contentId},
            {tag::attachExtension, ExtensionOf(attachment.fileName)},
            {tag::attachSize, attachment.size},
            {tag::renderingPosition, notRenderedInText},
            {tag::recordKey,
             Blob{static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8),
                  static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 24)}},
            {tag::objectType, std::int64_t{MAPI_ATTACH}}};
}

bool SetAttachmentValue(Attachment& attachment, std::uint32_t tag, const StoredValue& value)
{
    switch (tag)
    {
    case tag::attachMethod:
        attachment.method =
            std::holds_alternative<std::int64_t>(value) ? std::get<std::int64_t>(value) : NO_ATTACHMENT;
        return true;
    case tag::attachLongFilename:
        attachment.fileName = value;
        return true;
    case tag::attachFilename:
        // The short form of a name that is there already says less than the long one.
        if (TextOf(attachment.fileName).empty())
            attachment.fileName = value;
        return true;
    case tag::displayName:
        attachment.displayName = value;
        return true;
    case tag::attachMimeTag:
        attachment.mimeTag = value;
        return true;
    case tag::attachContentId:
        attachment.contentId = value;
        return true;
    default:
        return false;
    }
}
