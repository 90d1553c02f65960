#pragma once

#include "engine/ScanState.h"
#include "store/Folder.h"

#include <windows.h>

#include <comutil.h>

#include <cstddef>
#include <string>

// The search phase: looks for the duplicates of every message of the selected folders and records them in
// duplicateIds, reporting to progressDialog. Failures of the store end it silently with what was found so
// far. `root` is only held for the time of the search.
void RunDuplicateScan(ScanState& state, CFolder root);

// Searches folder `startIndex` and every selected one after it for duplicates of the described message; a row
// for each folder with some. `folderName`, of the message's own folder, is not used. A failure of the store
// ends the search.
void FindDuplicatesFromFolder(ScanState& state, const std::wstring& subject, const std::wstring& folderName,
                              std::size_t startIndex, const std::wstring& body,
                              const std::wstring& senderEmail, const std::wstring& senderName,
                              const _variant_t& transportHeaders, const _variant_t& sendTimeLower);

// 1 when `entryId` is a duplicate of this run, by exact comparison; 0 when it is none or a stop is requested.
LONG IsAlreadyDuplicate(const ScanState& state, const std::wstring& entryId);

// The action phase: treats every recorded duplicate with the one action chosen. A message that cannot be
// fetched or treated is passed over silently; a requested stop ends the phase after the message in hand.
void ApplyDuplicateAction(ScanState& state);
