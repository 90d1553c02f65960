#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/SessionContext.h"

#include <windows.h>

#include <mapidefs.h>

#include <optional>
#include <vector>

// Moving, copying and deleting one message. They throw MapiError; a store that reports success but for "some
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

// Whether the id, which a store may keep or give anew to what it moves, names a message of that folder. False
// also where that cannot be told: what asks after a move has succeeded whatever is answered.
bool LiesIn(SessionContext& session, IMsgStore* store, const EntryIdBytes& messageId,
            const EntryIdBytes& folderId);

// The entry id of the folder's last row with that search key. Reads all of the folder's rows.
std::optional<EntryIdBytes> LastWithSearchKey(IMAPIFolder* folder,
                                              const std::vector<std::uint8_t>& searchKey);
