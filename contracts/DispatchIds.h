#pragma once

// The automation contract between the add-in's mail-store wrappers and the mail-store automation server:
// one dispatch id for each operation, by the object kind on which it is invoked. The server's member names
// play no part; every call goes by these numbers, its invoke kind and its argument types.
//
// The comment behind an id gives: invoke kind, argument types -> result type.
namespace dispid
{
namespace session
{
inline constexpr long logOn = 4;            // method, six VT_VARIANT -> none
inline constexpr long stores = 6;           // get -> VT_DISPATCH
inline constexpr long getItemFromId = 9;    // method, VT_BSTR, VT_VARIANT, VT_VARIANT -> VT_DISPATCH
}    // namespace session

namespace storeCollection
{
inline constexpr long defaultStore = 4;    // get -> VT_DISPATCH
}    // namespace storeCollection

namespace store
{
inline constexpr long entryId = 9;         // get -> VT_BSTR, upper-case hex
inline constexpr long rootFolder = 104;    // get -> VT_DISPATCH
}    // namespace store

namespace folder
{
inline constexpr long name = 0;                // get -> VT_BSTR, default member
inline constexpr long entryId = 9;             // get -> VT_BSTR, upper-case hex
inline constexpr long parent = 11;             // get -> VT_DISPATCH
inline constexpr long items = 17;              // get -> VT_DISPATCH
inline constexpr long folders = 18;            // get -> VT_DISPATCH
inline constexpr long defaultItemType = 22;    // get -> VT_I4, Outlook's OlItemType
}    // namespace folder

namespace folderCollection
{
inline constexpr long count = 1;    // get -> VT_I4
inline constexpr long item = 9;     // method, VT_VARIANT (1-based index) -> VT_DISPATCH
}    // namespace folderCollection

namespace itemCollection
{
inline constexpr long count = 1;     // get -> VT_I4
inline constexpr long item = 9;      // method, VT_VARIANT (1-based index) -> VT_DISPATCH
inline constexpr long table = 13;    // get -> VT_DISPATCH
}    // namespace itemCollection

namespace itemTable
{
inline constexpr long columns = 3;    // put, VT_VARIANT (array of property tags)
inline constexpr long getRow = 7;     // method -> VT_VARIANT (array, one element a column)
inline constexpr long filter = 9;     // get -> VT_DISPATCH
}    // namespace itemTable

namespace tableFilter
{
inline constexpr long clear = 1;             // method -> none
inline constexpr long setRestriction = 2;    // method, VT_I4 (RES_*) -> VT_DISPATCH
inline constexpr long findFirst = 5;         // method, VT_BOOL -> VT_BOOL
inline constexpr long findNext = 7;          // method, VT_BOOL -> VT_BOOL
}    // namespace tableFilter

namespace andRestriction
{
inline constexpr long add = 2;    // method, VT_I4 (RES_*) -> VT_DISPATCH
}    // namespace andRestriction

namespace propertyRestriction
{
inline constexpr long propTag = 2;    // put, VT_I4
inline constexpr long value = 3;      // put, VT_VARIANT
inline constexpr long relop = 10;     // put, VT_I4 (RELOP_*)
}    // namespace propertyRestriction

namespace contentRestriction
{
inline constexpr long propTag = 2;        // put, VT_I4
inline constexpr long value = 3;          // put, VT_VARIANT
inline constexpr long fuzzyLevel = 10;    // put, VT_I4 (FL_*)
}    // namespace contentRestriction

namespace subRestriction
{
inline constexpr long setInner = 2;     // method, VT_I4 (RES_*) -> VT_DISPATCH
inline constexpr long subObject = 3;    // put, VT_I4 (property tag)
}    // namespace subRestriction

namespace mailItem
{
inline constexpr long subject = 0;         // get -> VT_BSTR, default member
inline constexpr long field = 3;           // get, VT_VARIANT (property tag) -> VT_VARIANT
inline constexpr long copyTo = 5;          // method, VT_VARIANT (VT_DISPATCH folder) -> none
inline constexpr long save = 6;            // method -> none
inline constexpr long bodyText = 11;       // get -> VT_BSTR
inline constexpr long expiryTime = 21;     // put, VT_DATE, local time
inline constexpr long flagText = 24;       // put, VT_BSTR
inline constexpr long flagStatus = 25;     // put, VT_I4
inline constexpr long senderEmail = 50;    // get -> VT_BSTR
inline constexpr long senderName = 52;     // get -> VT_BSTR
inline constexpr long deleteItem = 55;     // method, VT_VARIANT (1 to Deleted Items, 0 for good) -> none
inline constexpr long sentTime = 57;       // get -> VT_DATE, local time
inline constexpr long moveTo = 68;         // method, VT_DISPATCH (folder) -> VT_DISPATCH
inline constexpr long attachments = 73;    // get -> VT_DISPATCH
inline constexpr long recipients = 77;     // get -> VT_DISPATCH
inline constexpr long entryId = 201;       // get -> VT_BSTR, upper-case hex
}    // namespace mailItem

namespace recipientCollection
{
inline constexpr long item = 0;      // get, VT_VARIANT (1-based index) -> VT_DISPATCH, default member
inline constexpr long count = 80;    // get -> VT_I4
}    // namespace recipientCollection

namespace recipient
{
inline constexpr long name = 7;       // get -> VT_BSTR
inline constexpr long type = 3093;    // get -> VT_I4, 0x0C15, the property id of PR_RECIPIENT_TYPE
}    // namespace recipient

namespace attachmentCollection
{
inline constexpr long item = 0;      // get, VT_VARIANT (1-based index) -> VT_DISPATCH, default member
inline constexpr long count = 80;    // get -> VT_I4
}    // namespace attachmentCollection

namespace attachment
{
inline constexpr long fileName = 103;    // get -> VT_BSTR
}    // namespace attachment
}    // namespace dispid
