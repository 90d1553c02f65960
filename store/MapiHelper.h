#pragma once

#include "store/EntryIdBlock.h"
#include "store/MapiLibrary.h"

#include <windows.h>

#include <mapix.h>
#include <wrl/client.h>

#include <memory>

struct MapiHelper;

// Loads MAPI, opens a session of the system's own beside the mail program's, and its default store.
// `exchangeProfile`, which is the caller's, becomes TRUE when the profile's services include Exchange; it is
// never set back. Nothing that fails is shown: a failing call ends its step, and what the step would have
// filled stays empty. Starting a helper that runs starts it anew. One helper runs at a time, on the thread
// that starts it.
void StartMapiHelper(MapiHelper& helper, BOOL& exchangeProfile) noexcept;

// Ends the session and gives everything back, from whatever state; a helper that does not run stays as it is.
// On the thread that started it.
void StopMapiHelper(MapiHelper& helper) noexcept;

// The state of the helper; starts inactive, and is stopped when it ends.
struct MapiHelper : MapiLibrary
{
    static constexpr int profileNameSize = 260;

    MapiHelper() noexcept = default;
    MapiHelper(const MapiHelper&) = delete;
    MapiHelper& operator=(const MapiHelper&) = delete;
    ~MapiHelper() { StopMapiHelper(*this); }

    Microsoft::WRL::ComPtr<IMAPISession> mapiSession;
    Microsoft::WRL::ComPtr<IMsgStore> defaultStore;

    // Of `profileNameSize` characters, ended by a null: the name that the session's status row shows. Null
    // while MAPI is not loaded.
    std::unique_ptr<wchar_t[]> profileName;

    // Of the default store's folders, each kept when the store says that it has one.
    EntryIdBlock inboxEntryId;
    EntryIdBlock outboxEntryId;
    EntryIdBlock deletedItemsEntryId;
    EntryIdBlock sentItemsEntryId;
    EntryIdBlock fifthFolderEntryId;
    EntryIdBlock subtreeEntryId;    // the top of what a user sees
};

// The running helper's session and store, for code that has no helper at hand: borrowed, and null while there
// is none. Written on the helper's thread.
inline IMAPISession* publishedMapiSession = nullptr;
inline IMsgStore* publishedMapiStore = nullptr;
