#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/Restriction.h"
#include "quorvex/RowIndex.h"
#include "quorvex/SnapshotRows.h"
#include "quorvex/TextDigest.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

// The messages of one folder as its contents table listed them, and the index that searches are answered
// from. Rows are numbered from 0 in the table's order. The table is read on first use, in large batches; of
// each message the snapshot keeps the entry id and digests, never its texts.
//
// Safe on any thread that is prepared for MAPI. Functions that ask the folder throw MapiError when it fails
// them.
class FolderSnapshot
{
public:
    // The digests of all snapshots of a session are made with one key.
    FolderSnapshot(Microsoft::WRL::ComPtr<IMAPIFolder> folder, std::shared_ptr<const TextDigester> digester);
    FolderSnapshot(const FolderSnapshot&) = delete;
    FolderSnapshot& operator=(const FolderSnapshot&) = delete;

    std::size_t Count();

    // PR_ENTRYID of a row; throws MapiError when there is no such row.
    EntryIdBytes EntryId(std::size_t row);

    // PR_LONGTERM_ENTRYID_FROM_TABLE of a row; empty when the table has none for it.
    EntryIdBytes LongTermEntryId(std::size_t row);

    // The rows that meet the restriction, ascending: exactly those that a walk over all rows would yield. A
    // message that has gone since the table was read, or that cannot be read, meets no restriction that needs
    // it opened.
    std::vector<std::uint32_t> Search(const Restriction& restriction);

    // The row's message, opened for reading.
    Microsoft::WRL::ComPtr<IMessage> OpenMessage(std::size_t row);

    // Remembers the digest of a text property that a caller has read whole from the message with this entry
    // id, so that a search need not read it again. `tag` is the PT_UNICODE one. False when the message is no
    // row of this snapshot.
    bool NoteText(const EntryIdBytes& entryId, ULONG tag, std::wstring_view text);

    // True once the table has been read.
    bool IsLoaded() const;

private:
    std::uint32_t CheckedRow(std::size_t row);

    mutable std::mutex mutex;    // guards the rows and the index
    SnapshotRows rows;
    RowIndex index;
};
