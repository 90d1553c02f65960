#include "localmapi/EntryId.h"

#include "localmapi/ComBoundary.h"

#include <mapicode.h>

#include <algorithm>
#include <span>

namespace
{
constexpr std::size_t uidOffset = 4;
constexpr std::size_t kindOffset = 20;
constexpr std::size_t idOffset = 24;

void PutNumber(std::span<std::uint8_t> bytes, std::uint64_t number)
{
    for (std::uint8_t& byte : bytes)
    {
        byte = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

std::uint64_t GetNumber(std::span<const std::uint8_t> bytes)
{
    std::uint64_t number = 0;
    for (std::size_t index = bytes.size(); index > 0; --index)
        number = number << 8 | bytes[index - 1];
    return number;
}

bool IsKnownKind(std::uint64_t kind)
{
    return kind == MAPI_STORE || kind == MAPI_FOLDER || kind == MAPI_MESSAGE;
}
}    // namespace

bool EntryId::NamesSameObject(const EntryId& other) const
{
    return storeUid == other.storeUid && kind == other.kind && id == other.id;
}

Blob EncodeEntryId(const EntryId& entryId)
{
    Blob bytes(entryIdSize);
    const std::span<std::uint8_t> all(bytes);
    bytes[0] = entryId.shortTerm ? MAPI_SHORTTERM : 0;
    std::copy(entryId.storeUid.begin(), entryId.storeUid.end(), bytes.begin() + uidOffset);
    PutNumber(all.subspan(kindOffset, 4), static_cast<std::uint32_t>(entryId.kind));
    PutNumber(all.subspan(idOffset, 8), static_cast<std::uint64_t>(entryId.id));
    return bytes;
}

EntryId DecodeEntryId(ULONG size, const void* bytes)
{
    if (size != entryIdSize || !bytes)
        throw MapiError(MAPI_E_INVALID_ENTRYID);
    const std::span all(static_cast<const std::uint8_t*>(bytes), entryIdSize);
    const std::uint64_t kind = GetNumber(all.subspan(kindOffset, 4));
    const std::uint64_t flags = GetNumber(all.first(uidOffset));
    if (!IsKnownKind(kind) || (flags & ~std::uint64_t{MAPI_SHORTTERM}) != 0)
        throw MapiError(MAPI_E_INVALID_ENTRYID);
    EntryId entryId{{},
                    static_cast<EntryKind>(kind),
                    static_cast<std::int64_t>(GetNumber(all.subspan(idOffset, 8))),
                    flags != 0};
    std::copy_n(all.begin() + uidOffset, entryId.storeUid.size(), entryId.storeUid.begin());
    return entryId;
}

EntryId DecodeEntryIdOf(const StoreUid& storeUid, ULONG size, const void* bytes)
{
    const EntryId entryId = DecodeEntryId(size, bytes);
    if (entryId.storeUid != storeUid)
        throw MapiError(MAPI_E_UNKNOWN_ENTRYID);
    return entryId;
}

EntryId DecodeEntryIdOf(const StoreUid& storeUid, EntryKind kind, ULONG size, const void* bytes)
{
    const EntryId entryId = DecodeEntryIdOf(storeUid, size, bytes);
    if (entryId.kind != kind)
        throw MapiError(MAPI_E_INVALID_ENTRYID);
    return entryId;
}
