#pragma once

#include <windows.h>

// Flags of MAPI's documentation that not every platform's headers have.
namespace mapi_flag
{
inline constexpr ULONG showSoftDeletes = 0x00000002;     // SHOW_SOFT_DELETES
inline constexpr ULONG deleteHardDelete = 0x00000010;    // DELETE_HARD_DELETE
inline constexpr ULONG noCache = 0x00000200;             // MAPI_NO_CACHE
inline constexpr ULONG storeUnicodeOk = 0x00040000;      // STORE_UNICODE_OK
}    // namespace mapi_flag
