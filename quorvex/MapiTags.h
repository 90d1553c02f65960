#pragma once

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

// Properties that Outlook defined and MAPI's own headers do not list.
namespace tag
{
inline constexpr ULONG flagStatus = PROP_TAG(PT_LONG, 0x1090);    // 0 none, 1 complete, 2 flagged

// In a contents table: the row's id for good, where PR_ENTRYID is one for this session.
inline constexpr ULONG longTermEntryIdFromTable = PROP_TAG(PT_BINARY, 0x6670);

// Of a folder: when anything in it last changed (PR_LOCAL_COMMIT_TIME_MAX).
inline constexpr ULONG localCommitTimeMax = PROP_TAG(PT_SYSTIME, 0x670A);

// The flag's text is a named property; its tag differs from store to store.
inline constexpr GUID commonPropertySet = {0x00062008, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr LONG flagTextId = 0x8530;
}    // namespace tag
