#include "engine/ScanDriver.h"

#include "engine/LocalTime.h"
#include "engine/MatchFilter.h"
#include "engine/ScanProgressView.h"
#include "win/OleException.h"
#include "win/Variant.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

namespace
{
constexpr LONG bestAccess = MAPI_BEST_ACCESS;
constexpr LONG flagged = 2;    // OlFlagStatus olFlagMarked
constexpr UnixSeconds sendTimeTolerance = 5;
constexpr UnixSeconds expiredSince = 300;

// What the search compares of one message, beside the lists that it keeps in ScanState.
struct KeptItem
{
    std::wstring subject;
    std::wstring body;
    std::wstring senderEmail;
    std::wstring senderName;
    _variant_t transportHeaders;
    _variant_t sendTimeLower;
};

// A folder as the driver visits it: its messages, none when it is not to be searched.
struct VisitedFolder
{
    std::wstring name;
    CItemCollection items;
    LONG count = 0;
};

VisitedFolder VisitFolder(const FOLDER_INFO& record)
{
    VisitedFolder visited;
    visited.name = record.folder.GetName();
    visited.items = record.folder.GetItems();
    visited.count = visited.items ? visited.items.GetCount() : 0;
    if (visited.count > 0 && record.folder.GetDefaultItemType() != mailItems)
        visited.count = 0;
    return visited;
}

void ClearNames(ScanState& state)
{
    state.toNames.clear();
    state.attachmentNames.clear();
    state.ccNames.clear();
    state.bccNames.clear();
}

std::vector<std::wstring>* NamesOfType(ScanState& state, LONG recipientType)
{
    switch (recipientType)
    {
    case MAPI_TO:
        return &state.toNames;
    case MAPI_CC:
        return &state.ccNames;
    case MAPI_BCC:
        return &state.bccNames;
    default:
        return nullptr;
    }
}

void ReadRecipientNames(ScanState& state, const CMailItem& item)
{
    const CRecipientCollection recipients = item.GetRecipients();
    const LONG count = recipients.GetCount();
    for (LONG i = 1; i <= count; ++i)
    {
        const CRecipient recipient = recipients.GetItem(i);
        if (std::vector<std::wstring>* names = NamesOfType(state, recipient.GetType()))
            names->push_back(recipient.GetName());
    }
}

void ReadAttachmentNames(ScanState& state, const CMailItem& item)
{
    const CAttachmentCollection attachments = item.GetAttachments();
    const LONG count = attachments.GetCount();
    for (LONG i = 1; i <= count; ++i)
        state.attachmentNames.push_back(attachments.GetItem(i).GetFileName());
}

// The sent time brought to a whole second of the zone; nothing for a time that no message can have been sent
// at.
std::optional<UnixSeconds> SentSecond(DATE sentTime, const TimeZone& zone)
{
    const std::optional<SYSTEMTIME> sent = CalendarOf(sentTime);
    if (!sent || sent->wYear < 1971 || sent->wYear > 2999)
        return std::nullopt;
    // There and back: a local time that a change of the clock leaves out becomes one that exists.
    const std::optional<UnixSeconds> instant = zone.ToInstant(*sent);
    const std::optional<SYSTEMTIME> local = instant ? zone.ToLocal(*instant) : std::nullopt;
    return local ? zone.ToInstant(*local) : std::nullopt;
}

void SetSendTimeRange(ScanState& state, KeptItem& kept, const CMailItem& item, const TimeZone& zone)
{
    const std::optional<UnixSeconds> sent = SentSecond(item.GetSentTime(), zone);
    if (!sent)
        return;
    kept.sendTimeLower = DateVariant(ToLocalDate(*sent - sendTimeTolerance, zone).value);
    state.sendTimeUpper = DateVariant(ToLocalDate(*sent + sendTimeTolerance, zone).value);
    state.sendTimeRangeSet = 1;
}

KeptItem ReadKeptItem(ScanState& state, const CMailItem& item, const TimeZone& zone)
{
    KeptItem kept;
    ClearNames(state);
    kept.subject = item.GetSubject();
    kept.body = item.GetBodyText();
    kept.senderEmail = item.GetSenderEmail();
    kept.senderName = item.GetSenderName();
    if (state.useRecipientName == 1)
        ReadRecipientNames(state, item);
    if (state.useAttachments == 1)
        ReadAttachmentNames(state, item);
    kept.transportHeaders = item.GetField(PR_TRANSPORT_MESSAGE_HEADERS_A);
    state.sendTimeRangeSet = 0;
    if (state.useSendTime == 1)
        SetSendTimeRange(state, kept, item, zone);
    return kept;
}

void SearchForItem(ScanState& state, const VisitedFolder& visited, LONG index, std::size_t folderIndex,
                   const TimeZone& zone)
{
    const CMailItem item = visited.items.GetItem(index);
    state.currentItemId = item.GetEntryId();
    if (IsAlreadyDuplicate(state, state.currentItemId))
        return;
    const KeptItem kept = ReadKeptItem(state, item, zone);
    state.firstMatchPending = 1;
    FindDuplicatesFromFolder(state, kept.subject, visited.name, folderIndex, kept.body, kept.senderEmail,
                             kept.senderName, kept.transportHeaders, kept.sendTimeLower);
}

void SearchFolders(ScanState& state)
{
    const TimeZone zone;
    const std::size_t folderCount = state.folders.size();
    for (std::size_t i = 0; i < folderCount && !state.stopRequested; ++i)
    {
        if (!state.folders[i].selected)
            continue;
        const VisitedFolder visited = VisitFolder(state.folders[i]);
        for (LONG j = 1; j <= visited.count && !state.stopRequested; ++j)
            SearchForItem(state, visited, j, i, zone);
    }
}

void FlagItem(const CMailItem& item)
{
    item.SetFlagStatus(flagged);
    item.SetFlagText(L"Duplicate Mail");
    item.Save();
}

void ExpireItem(const CMailItem& item)
{
    item.SetExpiryTime(ToLocalDate(CurrentUnixSeconds() - expiredSince, TimeZone()).value);
    item.Save();
}

void TreatItem(const ScanState& state, const CMailItem& item)
{
    if (state.actionFlag)
        FlagItem(item);
    else if (state.actionExpire)
        ExpireItem(item);
    else if (state.actionCopy)
        item.CopyTo(state.destFolder);
    else if (state.actionMove)
        item.MoveTo(state.destFolder);
    else if (state.actionDelete)
        item.Delete(1);
    else if (state.actionDeletePermanently)
        item.Delete(0);
}
}    // namespace

void RunDuplicateScan(ScanState& state, CFolder)
{
    if (state.folders.empty())
        return;
    state.duplicateIds.Clear();
    try
    {
        SearchFolders(state);
    }
    catch (const COleException&)
    {
        // What was found by then is still treated and reported.
    }
}

void FindDuplicatesFromFolder(ScanState& state, const std::wstring& subject, const std::wstring&,
                              std::size_t startIndex, const std::wstring& body,
                              const std::wstring& senderEmail, const std::wstring& senderName,
                              const _variant_t& transportHeaders, const _variant_t& sendTimeLower)
try
{
    for (std::size_t f = startIndex; f < state.folders.size() && !state.stopRequested; ++f)
    {
        if (!state.folders[f].selected)
            continue;
        const VisitedFolder visited = VisitFolder(state.folders[f]);
        if (visited.count == 0)
            continue;
        const LONG found = FindDuplicatesOfItem(state, subject, visited.items, body, senderEmail, senderName,
                                                transportHeaders, sendTimeLower);
        if (found != 0)
            state.progressDialog->AddResultRow(visited.name, subject, found, state.duplicateCount);
        state.progressDialog->StepProgress();
    }
}
catch (const COleException&)
{
    // The folders left are given up for this message only; the search goes on with the next message.
}

LONG IsAlreadyDuplicate(const ScanState& state, const std::wstring& entryId)
{
    if (state.duplicateIds.IsEmpty() || state.stopRequested == 1)
        return 0;
    return state.duplicateIds.Contains(entryId) ? 1 : 0;
}

void ApplyDuplicateAction(ScanState& state)
{
    const _variant_t storeId = TextVariant(state.storeEntryId);
    const _variant_t access = LongVariant(bestAccess);
    for (std::size_t k = 0; k < state.duplicateIds.GetCount() && !state.stopRequested; ++k)
    {
        try
        {
            TreatItem(state, state.storeSession.GetItemFromId(state.duplicateIds[k], storeId, access));
        }
        catch (const COleException&)
        {
            // One message that the store refuses must not keep the others from being treated.
        }
    }
}
