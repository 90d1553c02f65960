#pragma once

#include <windows.h>

#include <optional>
#include <string>

// Which version record the system gave.
enum class VersionQuery
{
    failed,
    basic,    // product type and suite mask are unknown
    extended
};

// What the running system says of itself. All zero and empty when the version queries failed.
struct SystemFacts
{
    VersionQuery query = VersionQuery::failed;
    DWORD platform = 0;    // VER_PLATFORM_...
    DWORD major = 0;
    DWORD minor = 0;
    DWORD build = 0;
    std::wstring servicePack;
    BYTE productType = 0;                      // VER_NT_...
    WORD suiteMask = 0;                        // VER_SUITE_...
    WORD architecture = 0;                     // PROCESSOR_ARCHITECTURE_..., as the running program sees it
    std::optional<WORD> nativeArchitecture;    // the machine's own, where the system tells it
    bool isServer2003R2 = false;
};

// Asks the system; the version is the one that it admits to the running program. Never fails.
SystemFacts ReadSystemFacts();

// The texts that the user is shown of these facts. The name is empty for systems older than Windows 2000 or
// not of the NT family; it ends as the product line does, trailing blank or comma included.
std::wstring SystemName(const SystemFacts& facts);
std::wstring SystemVersion(const SystemFacts& facts);
