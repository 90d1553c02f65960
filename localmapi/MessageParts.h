#pragma once

#include "localmapi/storage/MessageDraft.h"

#include <windows.h>

#include <mapidefs.h>

#include <span>
#include <vector>

// IMessage::ModifyRecipients: `flags` none replaces all, else MODRECIP_ADD, MODRECIP_MODIFY (by PR_ROWID, a
// row without one is added) or MODRECIP_REMOVE (by PR_ROWID). Throws MapiError.
std::vector<Recipient> ModifiedRecipients(std::vector<Recipient> recipients, ULONG flags,
                                          const ADRLIST& list);

// Adds the draft's recipients and attachments, saved or not, to `target`, but those whose table's tag is
// excluded. Throws MapiError with what the target refuses.
void CopyMessageParts(MessageDraft& draft, IMessage& target, std::span<const std::uint32_t> excludedTags);
