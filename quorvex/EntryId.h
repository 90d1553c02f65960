#pragma once

#include <windows.h>

#include <mapidefs.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using EntryIdBytes = std::vector<std::uint8_t>;

// The bytes of a binary value, borrowed from it; empty when it has none.
inline std::span<const std::uint8_t> BytesOf(const SBinary& binary) noexcept
{
    return {binary.lpb, binary.lpb ? binary.cb : 0};
}

// A copy of them.
inline EntryIdBytes IdOf(const SBinary& binary)
{
    const auto bytes = BytesOf(binary);
    return {bytes.begin(), bytes.end()};
}

// Automation shows entry ids as upper-case hexadecimal text, two digits a byte, nothing between them.
std::wstring ToHex(std::span<const std::uint8_t> bytes);

// Digits of either case; throws MapiError(E_INVALIDARG) for anything that is not pairs of hexadecimal digits.
EntryIdBytes FromHex(std::wstring_view text);

// The form in which MAPI's methods take an entry id; they do not write to it.
inline ENTRYID* AsEntryId(const EntryIdBytes& id) noexcept
{
    return reinterpret_cast<ENTRYID*>(const_cast<std::uint8_t*>(id.data()));
}
