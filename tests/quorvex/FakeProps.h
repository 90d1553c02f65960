#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

// What the fake store's objects are made of: plain data that a test fills in and looks at.
namespace fake
{
using Bytes = std::vector<std::uint8_t>;

struct FileTime    // 100 ns since 1601-01-01 UTC
{
    std::int64_t ticks;
    bool operator==(const FileTime&) const = default;
};

using Value = std::variant<std::int32_t, bool, FileTime, std::wstring, Bytes>;

// By full tag, text under its PT_UNICODE form; a property that is not in it is missing.
using Properties = std::map<ULONG, Value>;

// How many times what was asked for; shared by all objects of one fake store.
struct Counters
{
    std::size_t tablesOpened = 0;
    std::size_t rowsRead = 0;
    std::size_t messagesOpened = 0;
    std::size_t attachmentsOpened = 0;
    std::size_t streamsOpened = 0;
    std::size_t getPropsCalls = 0;
};

// What a table does that MAPI allows and callers dislike.
struct TableHabits
{
    std::size_t cutTextAt = 0;              // longer texts are cut to this many characters; 0 never
    std::map<ULONG, SCODE> errorColumns;    // by tag: every row has PT_ERROR with this code there
    std::map<ULONG, HRESULT>
        refusedColumns;          // by tag: SetColumns fails with this when it is among the columns
    LONG rowsAtOnce = 0;         // the most that one QueryRows gives; 0 as many as asked for
    HRESULT queryRows = S_OK;    // what QueryRows fails with
    HRESULT open = S_OK;         // what opening the table fails with
};

// What an object's properties do.
struct PropHabits
{
    // GetProps answers MAPI_E_NOT_ENOUGH_MEMORY for texts of so many characters and binaries of so many
    // bytes; 0 never.
    std::size_t longValueAt = 0;
    std::map<ULONG, SCODE> errorProps;    // by tag: PT_ERROR with this code, as a stream too
    HRESULT getProps = S_OK;              // what GetProps fails with
    std::wstring lastError;               // what GetLastError says; empty nothing
};

struct Message
{
    Bytes entryId;
    Properties properties;
    std::vector<Properties> attachments;    // PR_ATTACH_NUM is the place in here
    std::vector<Properties> recipients;
    TableHabits attachmentTable;
    TableHabits recipientTable;
    PropHabits habits;
    HRESULT open = S_OK;    // what opening it fails with
};

struct Folder
{
    Bytes entryId;
    Properties properties;    // PR_CONTENT_COUNT is answered from `messages` unless `hidesCount`
    std::vector<std::shared_ptr<Message>> messages;
    TableHabits table;
    PropHabits habits;
    bool hidesCount = false;
    std::shared_ptr<Counters> counters = std::make_shared<Counters>();
};

// A new MAPI property of `tag` with that value, or PT_ERROR; what it points to is linked to the buffer
// `parent`.
SPropValue MakeProp(ULONG tag, const Value* value, SCODE missing, void* parent);

// The value under the tag, whichever string type the tag names; null when missing.
const Value* Find(const Properties& properties, ULONG tag);

// The tag with PT_STRING8 turned into PT_UNICODE.
ULONG UnicodeTag(ULONG tag);
}    // namespace fake
