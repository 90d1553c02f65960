#pragma once

#include "localmapi/storage/StoredValue.h"

#include <windows.h>

#include <mapidefs.h>

#include <array>
#include <cstdint>

// The MAPIUID in every entry id of one store.
using StoreUid = std::array<std::uint8_t, 16>;

// Names this provider: PR_MDB_PROVIDER of its stores.
inline constexpr StoreUid providerUid = {0x52, 0x6a, 0x1c, 0x8b, 0x4f, 0x0e, 0x7b, 0x4c,
                                         0x9d, 0x0a, 0x5e, 0x2b, 0x7f, 0x3c, 0x9a, 0x41};

// What an entry id names, by MAPI's object types.
enum class EntryKind : std::uint32_t
{
    Store = MAPI_STORE,
    Folder = MAPI_FOLDER,
    Message = MAPI_MESSAGE
};

// One object of a store as its entry id tells it. The id's 32 bytes: 4 of flags, 16 of the store's uid,
// 4 of kind and 8 of row id, the numbers in little-endian order. All ids are good for as long as the object
// lives; the short-term form is the same id with MAPI_SHORTTERM among its flags, for the tables of stores
// that have two kinds.
struct EntryId
{
    StoreUid storeUid;
    EntryKind kind;
    std::int64_t id;    // of the folder's or message's row; 0 for the store itself
    bool shortTerm = false;

    // Whether both name the same object, in whatever form.
    bool NamesSameObject(const EntryId& other) const;
};

inline constexpr std::size_t entryIdSize = 32;

Blob EncodeEntryId(const EntryId& entryId);

// Reads an entry id of whatever store. Throws MapiError MAPI_E_INVALID_ENTRYID when the bytes are none of
// ours: wrong length, no such kind, flags never given out.
EntryId DecodeEntryId(ULONG size, const void* bytes);

// Reads an entry id of the store `storeUid`; throws MapiError MAPI_E_UNKNOWN_ENTRYID for another store's.
EntryId DecodeEntryIdOf(const StoreUid& storeUid, ULONG size, const void* bytes);

// The same for an id that must be of one kind; throws MAPI_E_INVALID_ENTRYID for another.
EntryId DecodeEntryIdOf(const StoreUid& storeUid, EntryKind kind, ULONG size, const void* bytes);
