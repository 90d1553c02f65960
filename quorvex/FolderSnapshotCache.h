#pragma once

#include "quorvex/EntryId.h"
#include "quorvex/FolderSnapshot.h"
#include "quorvex/TextDigest.h"

#include <windows.h>

#include <mapidefs.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

// The snapshots of a session's folders, one for each folder, shared by every object that looks into it.
//
// A snapshot is good until this session changes something (its objects then call Invalidate) or until the
// folder's message count or its PR_LOCAL_COMMIT_TIME_MAX differs from what it was when the snapshot was made;
// that is looked at no more than once a second. Who holds a dropped snapshot may go on using it: it stays as
// it was.
//
// Safe on any thread that is prepared for MAPI. Throws MapiError when the folder fails.
class FolderSnapshotCache
{
public:
    using Clock = std::function<std::uint64_t()>;    // milliseconds, never going back

    FolderSnapshotCache();
    explicit FolderSnapshotCache(Clock clock);

    // The folder is kept by the snapshot; `folderId` is what the folder is known by here.
    std::shared_ptr<FolderSnapshot> Get(IMAPIFolder* folder, const EntryIdBytes& folderId);

    // The number of messages: of a snapshot that is still good, else PR_CONTENT_COUNT. Never reads rows
    // unless the folder does not give its count.
    std::size_t CountOf(IMAPIFolder* folder, const EntryIdBytes& folderId);

    void Invalidate(const EntryIdBytes& folderId);
    void InvalidateAll();

    // Tells the snapshot that holds this message what a text property of it reads (see
    // FolderSnapshot::NoteText).
    void NoteText(const EntryIdBytes& messageId, ULONG tag, std::wstring_view text);

private:
    // What a folder says of its state; what it does not say is left out of the comparison.
    struct FolderState
    {
        std::optional<std::int64_t> contentCount;
        std::optional<std::int64_t> commitTime;

        bool operator==(const FolderState&) const = default;
    };

    struct Entry
    {
        std::shared_ptr<FolderSnapshot> snapshot;
        FolderState state;
        std::uint64_t checkedAt = 0;
    };

    static FolderState ReadState(IMAPIFolder* folder);
    Entry& GoodEntry(IMAPIFolder* folder, const EntryIdBytes& folderId);

    std::mutex mutex;    // guards everything below
    Clock clock;
    std::shared_ptr<const TextDigester> digester;
    std::map<EntryIdBytes, Entry> entries;
    std::shared_ptr<FolderSnapshot> lastNoted;    // a folder's messages are read one after the other
};
