#include "quorvex/FolderSnapshotCache.h"

#include "quorvex/MapiTags.h"
#include "quorvex/PropertyReader.h"

#include <mapitags.h>

#include <array>
#include <utility>

namespace
{
constexpr std::uint64_t millisecondsBetweenChecks = 1000;

std::optional<std::int64_t> NumberAt(const PropertyValues& values, std::size_t index)
{
    const SPropValue* value = values.Find(index);
    return value ? NumberOf(*value) : std::nullopt;
}
}    // namespace

FolderSnapshotCache::FolderSnapshotCache() : FolderSnapshotCache(&GetTickCount64) {}

FolderSnapshotCache::FolderSnapshotCache(Clock milliseconds)
    : clock(std::move(milliseconds)),
      digester(std::make_shared<TextDigester>())
{
}

FolderSnapshotCache::FolderState FolderSnapshotCache::ReadState(IMAPIFolder* folder)
{
    constexpr std::array tags{PR_CONTENT_COUNT, tag::localCommitTimeMax};
    const PropertyValues values(folder, tags);
    return {NumberAt(values, 0), NumberAt(values, 1)};
}

// The folder's entry, made anew when there is none that may still be used.
FolderSnapshotCache::Entry& FolderSnapshotCache::GoodEntry(IMAPIFolder* folder, const EntryIdBytes& folderId)
{
    const std::uint64_t now = clock();
    const auto known = entries.find(folderId);
    if (known != entries.end() && now - known->second.checkedAt < millisecondsBetweenChecks)
        return known->second;
    // The state is taken before any row is read: what changes meanwhile makes the snapshot out of date.
    const FolderState state = ReadState(folder);
    if (known == entries.end() || known->second.state != state)
    {
        auto snapshot =
            std::make_shared<FolderSnapshot>(Microsoft::WRL::ComPtr<IMAPIFolder>(folder), digester);
        return entries[folderId] = {std::move(snapshot), state, now};
    }
    known->second.checkedAt = now;
    return known->second;
}

std::shared_ptr<FolderSnapshot> FolderSnapshotCache::Get(IMAPIFolder* folder, const EntryIdBytes& folderId)
{
    const std::lock_guard lock(mutex);
    return GoodEntry(folder, folderId).snapshot;
}

std::size_t FolderSnapshotCache::CountOf(IMAPIFolder* folder, const EntryIdBytes& folderId)
{
    const std::lock_guard lock(mutex);
    const Entry& entry = GoodEntry(folder, folderId);
    if (entry.state.contentCount && !entry.snapshot->IsLoaded())
        return static_cast<std::size_t>(*entry.state.contentCount);
    return entry.snapshot->Count();
}

void FolderSnapshotCache::Invalidate(const EntryIdBytes& folderId)
{
    const std::lock_guard lock(mutex);
    entries.erase(folderId);
    lastNoted.reset();
}

void FolderSnapshotCache::InvalidateAll()
{
    const std::lock_guard lock(mutex);
    entries.clear();
    lastNoted.reset();
}

void FolderSnapshotCache::NoteText(const EntryIdBytes& messageId, ULONG tag, std::wstring_view text)
{
    const std::lock_guard lock(mutex);
    if (lastNoted && lastNoted->NoteText(messageId, tag, text))
        return;
    for (const auto& [folderId, entry] : entries)
        if (entry.snapshot != lastNoted && entry.snapshot->NoteText(messageId, tag, text))
        {
            lastNoted = entry.snapshot;
            return;
        }
}
