#pragma once

#include "explorer/mail/MapiValue.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <vector>

// What the list shows of one message.
struct MessageRow
{
    EntryId id = {};
    std::wstring sender = {};
    std::wstring subject = {};
    FILETIME received{};    // UTC; zero when the message has no time
    LONG size = 0;          // bytes
    bool unread = false;
    bool flagged = false;
    bool expired = false;    // its expiry time has come
};

// What messages are sorted by; among equals the newest come first.
struct MessageOrder
{
    enum class Key
    {
        sender,
        subject,
        received,
        size
    };

    Key key = Key::received;
    bool descending = true;

    bool operator==(const MessageOrder&) const = default;
};

// The messages of one folder, in the store's own order until they are sorted, read on demand: a few batches
// of rows around those last asked for are kept, so that a folder of any size costs the same. One thread.
class MessageTable
{
public:
    MessageTable() = default;                                              // of no folder
    explicit MessageTable(Microsoft::WRL::ComPtr<IMAPITable> contents);    // throws COleDispatchException

    std::size_t GetCount() const noexcept { return count; }    // as of the opening

    // False when the store does not sort so: then the rows stay in the order they had.
    bool Sort(const MessageOrder& order);

    // Row `row`, from 0; an empty one when it is no longer there. Lives until the next call. Throws
    // COleDispatchException.
    const MessageRow& GetRow(std::size_t row);

    // The row of that message; none when it is not there or the store does not find it.
    std::optional<std::size_t> FindRow(const EntryId& message);

private:
    struct Batch
    {
        std::size_t first;
        std::vector<MessageRow> rows;
    };

    const Batch& FindBatch(std::size_t first);
    std::vector<MessageRow> ReadRows(std::size_t first);

    Microsoft::WRL::ComPtr<IMAPITable> table;
    std::size_t count = 0;
    std::list<Batch> batches;    // the last used first
};
