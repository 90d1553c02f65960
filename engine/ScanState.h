#pragma once

#include "engine/DuplicateIds.h"
#include "engine/FolderInfo.h"
#include "store/Folder.h"
#include "store/RDOSession.h"

#include <windows.h>

#include <comutil.h>

#include <atomic>
#include <string>
#include <vector>

class CProgressThread;
class FolderTreeView;
class ScanProgressView;

// Everything that a duplicate run needs and produces; one for each session, reused by every run. Flags hold 0
// or 1. Settings and session are written before a job starts and only read while it runs; the rest belongs to
// the job's thread while there is one, except `stopRequested`.
struct ScanState
{
    CRDOSession storeSession;    // logged on
    CFolder folderRoot;          // the default store's root folder
    std::wstring storeEntryId;
    std::vector<FOLDER_INFO> folders;          // in pre-order of the tree
    TreeItem treeRootItem = TreeItem::none;    // the first folder's item in the tree view
    bool exchangeProfile = false;    // the profile has the Exchange service: record long-term entry ids

    LONG useSenderName = 0;
    LONG useRecipientName = 0;
    LONG useInternetHeader = 0;
    LONG useSendTime = 0;
    LONG useAttachments = 0;
    LONG useTimeSpan = 0;
    LONG actionFlag = 0;
    LONG actionExpire = 0;
    LONG actionCopy = 0;
    LONG actionMove = 0;
    LONG actionDelete = 0;
    LONG actionDeletePermanently = 0;
    _variant_t cutoffDate;      // VT_DATE, local; the oldest delivery time admitted, while useTimeSpan is 1
    std::wstring actionName;    // as shown in the end-of-run message
    std::wstring destFolderPath;    // the destination folder's name; empty until one is chosen
    CFolder destFolder;

    LONG loadingTree = 0;                  // 1 while the worker is to load the tree, not to scan
    std::atomic<LONG> stopRequested{0};    // set by whoever watches; every loop of a job polls it
    // The job that runs, if one does: only told from null, for the thread alone knows how long its object
    // lives.
    std::atomic<CProgressThread*> workerThread{nullptr};
    FolderTreeView* folderTree = nullptr;          // borrowed; never null while a worker thread runs
    ScanProgressView* progressDialog = nullptr;    // borrowed for the run; never null during one
    DuplicateIds duplicateIds;
    LONG duplicateCount = 0;

    std::wstring currentItemId;
    std::vector<std::wstring> toNames;
    std::vector<std::wstring> ccNames;
    std::vector<std::wstring> bccNames;
    std::vector<std::wstring> attachmentNames;
    LONG firstMatchPending = 0;    // the next match is the kept item itself and is passed over
    LONG sendTimeRangeSet = 0;
    _variant_t sendTimeUpper;    // VT_DATE, local, exclusive
};
