#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <optional>
#include <vector>

// Moving, copying and deleting one message. All throw MapiError; a store that reports success but for "some
// of the messages" has not done it, and counts as failed.

enum class Transfer : ULONG
{
    Copy = 0,
    Move = MESSAGE_MOVE,
};
void TransferMessage(IMAPIFolder* from, const EntryIdBytes& messageId, IMAPIFolder* to, Transfer transfer);

void DeleteMessage(IMAPIFolder* from, const EntryIdBytes& messageId);

// Whether two entry ids, short- or long-term, are of one object.
bool IsSameEntry(IMAPISession* session, const EntryIdBytes& first, const EntryIdBytes& second);

// The entry id that a message moved into `folder` has there: its old one where the store keeps ids, else that
// of the last row with its search key. Nothing when it cannot be told.
std::optional<EntryIdBytes> FindMovedMessage(SessionContext& session, IMsgStore* store, IMAPIFolder* folder,
                                             const EntryIdBytes& folderId, const EntryIdBytes& oldId,
                                             const std::vector<std::uint8_t>& searchKey);
