#include "engine/ScanSettings.h"

#include "win/Variant.h"

#include <array>

namespace
{
constexpr UnixSeconds secondsPerDay = 86400;

LONG& FlagOf(ScanState& state, DuplicateAction action)
{
    switch (action)
    {
    case DuplicateAction::moveToDeletedItems:
        return state.actionDelete;
    case DuplicateAction::markAsExpired:
        return state.actionExpire;
    case DuplicateAction::copyToFolder:
        return state.actionCopy;
    case DuplicateAction::moveToFolder:
        return state.actionMove;
    case DuplicateAction::deletePermanently:
        return state.actionDeletePermanently;
    case DuplicateAction::markWithFlag:
        break;
    }
    return state.actionFlag;
}
}    // namespace

int DaysOfTimeSpan(int index)
{
    constexpr std::array days{1, 2, 5, 10, 20, 30, 50, 75, 100, 365};
    return index >= 0 && index < static_cast<int>(days.size()) ? days[static_cast<std::size_t>(index)] : 1;
}

void ChooseTimeSpan(ScanState& state, int index, UnixSeconds now, const TimeZone& zone)
{
    if (index < 0 || index == timeSpanAnytime)
        return;
    state.useTimeSpan = 1;
    state.cutoffDate = DateVariant(ToLocalDate(now - DaysOfTimeSpan(index) * secondsPerDay, zone).value);
}

DuplicateAction ActionOfIndex(int index)
{
    const bool listed = index >= static_cast<int>(DuplicateAction::moveToDeletedItems) &&
                        index <= static_cast<int>(DuplicateAction::deletePermanently);
    return listed ? static_cast<DuplicateAction>(index) : DuplicateAction::markWithFlag;
}

bool NeedsDestination(DuplicateAction action)
{
    return action == DuplicateAction::copyToFolder || action == DuplicateAction::moveToFolder;
}

bool ChooseAction(ScanState& state, DuplicateAction action, const std::wstring& actionName)
{
    if (NeedsDestination(action) && state.destFolderPath.empty())
        return false;
    FlagOf(state, action) = 1;
    state.actionName = actionName;
    return true;
}

void ResetSettings(ScanState& state)
{
    state.useSenderName = state.useRecipientName = state.useInternetHeader = 0;
    state.useSendTime = state.useAttachments = state.useTimeSpan = 0;
    state.actionFlag = state.actionExpire = state.actionCopy = 0;
    state.actionMove = state.actionDelete = state.actionDeletePermanently = 0;
    state.actionName.clear();
}
