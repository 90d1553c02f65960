#pragma once

#include <cstdint>

// The property tags the store gives a meaning to, by MAPI's names without the prefix. Text is in its Unicode
// form: the file holds no other.
namespace tag
{
inline constexpr std::uint32_t importance = 0x00170003;
inline constexpr std::uint32_t messageClass = 0x001A001F;
inline constexpr std::uint32_t subject = 0x0037001F;
inline constexpr std::uint32_t clientSubmitTime = 0x00390040;
inline constexpr std::uint32_t transportMessageHeaders = 0x007D001F;
inline constexpr std::uint32_t recipientType = 0x0C150003;
inline constexpr std::uint32_t senderName = 0x0C1A001F;
inline constexpr std::uint32_t senderAddressType = 0x0C1E001F;
inline constexpr std::uint32_t senderEmailAddress = 0x0C1F001F;
inline constexpr std::uint32_t displayBcc = 0x0E02001F;
inline constexpr std::uint32_t displayCc = 0x0E03001F;
inline constexpr std::uint32_t displayTo = 0x0E04001F;
inline constexpr std::uint32_t messageDeliveryTime = 0x0E060040;
inline constexpr std::uint32_t messageFlags = 0x0E070003;
inline constexpr std::uint32_t messageSize = 0x0E080003;
inline constexpr std::uint32_t parentEntryId = 0x0E090102;
inline constexpr std::uint32_t messageRecipients = 0x0E12000D;
inline constexpr std::uint32_t messageAttachments = 0x0E13000D;
inline constexpr std::uint32_t hasAttach = 0x0E1B000B;
inline constexpr std::uint32_t attachSize = 0x0E200003;
inline constexpr std::uint32_t attachNum = 0x0E210003;
inline constexpr std::uint32_t access = 0x0FF40003;
inline constexpr std::uint32_t instanceKey = 0x0FF60102;
inline constexpr std::uint32_t accessLevel = 0x0FF70003;
inline constexpr std::uint32_t mappingSignature = 0x0FF80102;
inline constexpr std::uint32_t recordKey = 0x0FF90102;
inline constexpr std::uint32_t storeRecordKey = 0x0FFA0102;
inline constexpr std::uint32_t storeEntryId = 0x0FFB0102;
inline constexpr std::uint32_t objectType = 0x0FFE0003;
inline constexpr std::uint32_t entryId = 0x0FFF0102;
inline constexpr std::uint32_t body = 0x1000001F;
inline constexpr std::uint32_t flagStatus = 0x10900003;
inline constexpr std::uint32_t rowId = 0x30000003;
inline constexpr std::uint32_t displayName = 0x3001001F;
inline constexpr std::uint32_t addressType = 0x3002001F;
inline constexpr std::uint32_t emailAddress = 0x3003001F;
inline constexpr std::uint32_t comment = 0x3004001F;
inline constexpr std::uint32_t depth = 0x30050003;
inline constexpr std::uint32_t creationTime = 0x30070040;
inline constexpr std::uint32_t lastModificationTime = 0x30080040;
inline constexpr std::uint32_t storeSupportMask = 0x340D0003;
inline constexpr std::uint32_t mdbProvider = 0x34140102;
inline constexpr std::uint32_t validFolderMask = 0x35DF0003;
inline constexpr std::uint32_t ipmSubtreeEntryId = 0x35E00102;
inline constexpr std::uint32_t ipmOutboxEntryId = 0x35E20102;
inline constexpr std::uint32_t ipmWastebasketEntryId = 0x35E30102;
inline constexpr std::uint32_t ipmSentmailEntryId = 0x35E40102;
inline constexpr std::uint32_t folderType = 0x36010003;
inline constexpr std::uint32_t contentCount = 0x36020003;
inline constexpr std::uint32_t contentUnread = 0x36030003;
inline constexpr std::uint32_t subfolders = 0x360A000B;
inline constexpr std::uint32_t containerClass = 0x3613001F;
inline constexpr std::uint32_t ipmAppointmentEntryId = 0x36D00102;
inline constexpr std::uint32_t ipmContactEntryId = 0x36D10102;
inline constexpr std::uint32_t ipmJournalEntryId = 0x36D20102;
inline constexpr std::uint32_t ipmNoteEntryId = 0x36D30102;
inline constexpr std::uint32_t ipmTaskEntryId = 0x36D40102;
inline constexpr std::uint32_t attachDataBin = 0x37010102;
inline constexpr std::uint32_t attachExtension = 0x3703001F;
inline constexpr std::uint32_t attachFilename = 0x3704001F;
inline constexpr std::uint32_t attachMethod = 0x37050003;
inline constexpr std::uint32_t attachLongFilename = 0x3707001F;
inline constexpr std::uint32_t renderingPosition = 0x370B0003;
inline constexpr std::uint32_t attachMimeTag = 0x370E001F;
inline constexpr std::uint32_t attachContentId = 0x3712001F;
inline constexpr std::uint32_t defaultStore = 0x3400000B;
inline constexpr std::uint32_t resourceType = 0x3E030003;
inline constexpr std::uint32_t longTermEntryIdFromTable = 0x66700102;
inline constexpr std::uint32_t localCommitTimeMax = 0x670A0040;

// The numbers by which the file knows a message or a folder. Their ids are PROP_ID_INVALID and those below
// it, which are given to no named property: they are never seen outside.
inline constexpr std::uint32_t storedMessageId = 0xFFFF0014;
inline constexpr std::uint32_t storedFolderId = 0xFFFE0014;
inline constexpr std::uint32_t storedParentId = 0xFFFD0014;

constexpr std::uint32_t IdOf(std::uint32_t tag)
{
    return tag >> 16;
}
constexpr std::uint32_t TypeOf(std::uint32_t tag)
{
    return tag & 0xFFFF;
}

}    // namespace tag
