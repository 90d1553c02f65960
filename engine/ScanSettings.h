#pragma once

#include "engine/LocalTime.h"
#include "engine/ScanState.h"

#include <string>

// The choices of a run as the entries of two lists, and how they are put into a ScanState.

// The list of time spans: 0 "Last day", 2, 5, 10, 20, 30, 50, 75 and 100 days, 9 "Last year", 10 "Anytime".
inline constexpr int timeSpanAnytime = 10;

int DaysOfTimeSpan(int index);    // 365 for the last year; 1 for an index that the list does not have

// Sets useTimeSpan and the cut-off, the days of that entry before `now`, in elapsed seconds. "Anytime" or
// nothing selected (a negative index) changes nothing, not even an earlier choice.
void ChooseTimeSpan(ScanState& state, int index, UnixSeconds now, const TimeZone& zone = TimeZone());

// The list of actions, in its order.
enum class DuplicateAction : int
{
    moveToDeletedItems = 0,
    markAsExpired = 1,
    copyToFolder = 2,
    moveToFolder = 3,
    markWithFlag = 4,
    deletePermanently = 5
};

// The action of a list index; markWithFlag when nothing is selected (negative) or the list has no such entry.
DuplicateAction ActionOfIndex(int index);

bool NeedsDestination(DuplicateAction action);    // a folder to copy or move to

// Sets the action's flag, and its name for the end-of-run message. False, with nothing set, when it needs a
// destination folder and none is chosen. It never clears the flag of another action: ResetSettings does.
bool ChooseAction(ScanState& state, DuplicateAction action, const std::wstring& actionName);

// Clears the criteria, the time span, the action flags and the action's name; cut-off and destination stay.
void ResetSettings(ScanState& state);
