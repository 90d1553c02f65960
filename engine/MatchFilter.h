#pragma once

#include "engine/ScanState.h"
#include "store/ItemCollection.h"

#include <windows.h>

#include <comutil.h>

#include <string>

// Lets the store find every message of `items` that agrees with the described one on subject, body and sender
// address and on the criteria of `state`; the recipient and attachment names and the upper end of the sending
// time are taken from `state`. Appends the matches' entry ids to duplicateIds, adds their number to
// duplicateCount and returns it. While firstMatchPending is 1 the first match is passed over and clears it.
//
// `transportHeaders` is a text or empty; `sendTime` is the inclusive lower end of the sending time (VT_DATE).
// A refused call ends the search: what is recorded by then stays recorded, but nothing is counted and 0 is
// returned.
LONG FindDuplicatesOfItem(ScanState& state, const std::wstring& subject, const CItemCollection& items,
                          const std::wstring& body, const std::wstring& senderEmail,
                          const std::wstring& senderName, const _variant_t& transportHeaders,
                          const _variant_t& sendTime);

// A binary property's bytes as upper-case hex, two digits a byte. Elements that are no bytes are left out.
std::wstring EntryIdToHex(const VARIANT& entryId);
