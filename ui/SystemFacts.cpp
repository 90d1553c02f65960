#include "ui/SystemFacts.h"

#include "win/StringTable.h"

namespace
{
constexpr WORD storageServer = 0x2000;    // VER_SUITE_STORAGE_SERVER, which not every header set has
constexpr WORD homeServer = 0x8000;       // VER_SUITE_WH_SERVER

bool AskForVersion(OSVERSIONINFOEXW& record, DWORD size)
{
    record = {};
    record.dwOSVersionInfoSize = size;
#ifdef _MSC_VER
#pragma warning(                                                                                             \
    suppress : 4996)    // deprecated: it answers what the host's manifest allows, as is wanted here
#endif
    return ::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&record)) != FALSE;
}

VersionQuery AskForVersion(OSVERSIONINFOEXW& record)
{
    if (AskForVersion(record, sizeof(OSVERSIONINFOEXW)))
        return VersionQuery::extended;
    if (AskForVersion(record, sizeof(OSVERSIONINFOW)))
        return VersionQuery::basic;
    record = {};
    return VersionQuery::failed;
}

std::optional<WORD> NativeArchitecture()
{
    using GetInfo = void(WINAPI*)(SYSTEM_INFO*);
    const auto getNativeSystemInfo = reinterpret_cast<GetInfo>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetNativeSystemInfo")));
    if (!getNativeSystemInfo)
        return std::nullopt;
    SYSTEM_INFO info{};
    getNativeSystemInfo(&info);
    return info.wProcessorArchitecture;
}

bool IsNtVersion(const SystemFacts& facts, DWORD major, DWORD minor)
{
    return facts.platform == VER_PLATFORM_WIN32_NT && facts.major == major && facts.minor == minor;
}

const wchar_t* Version52Name(const SystemFacts& facts)
{
    if (facts.isServer2003R2)
        return L"Windows Server 2003 R2, ";
    if (facts.suiteMask & storageServer)
        return L"Windows Storage Server 2003";
    if (facts.suiteMask & homeServer)
        return L"Windows Home Server";
    const WORD architecture = facts.nativeArchitecture.value_or(facts.architecture);
    if (facts.productType == VER_NT_WORKSTATION && architecture == PROCESSOR_ARCHITECTURE_AMD64)
        return L"Windows XP Professional x64 Edition";
    return L"Windows Server 2003, ";
}

// What follows the maker's name; nothing for the versions that came later.
const wchar_t* ProductLine(const SystemFacts& facts)
{
    const bool isWorkstation = facts.productType == VER_NT_WORKSTATION;
    if (IsNtVersion(facts, 6, 0))
        return isWorkstation ? L"Windows Vista " : L"Windows Server 2008 ";
    if (IsNtVersion(facts, 6, 1))
        return isWorkstation ? L"Windows 7 " : L"Windows Server 2008 R2 ";
    if (IsNtVersion(facts, 5, 2))
        return Version52Name(facts);
    if (IsNtVersion(facts, 5, 1))
        return L"Windows XP ";
    if (IsNtVersion(facts, 5, 0))
        return L"Windows 2000 ";
    return L"";
}

std::wstring FullName(const SystemFacts& facts)
{
    if (facts.query != VersionQuery::extended || facts.platform != VER_PLATFORM_WIN32_NT || facts.major < 5)
        return {};
    return std::wstring(L"Microsoft ") + ProductLine(facts);
}
}    // namespace

SystemFacts ReadSystemFacts()
{
    OSVERSIONINFOEXW record;
    SystemFacts facts;
    facts.query = AskForVersion(record);
    facts.platform = record.dwPlatformId;
    facts.major = record.dwMajorVersion;
    facts.minor = record.dwMinorVersion;
    facts.build = record.dwBuildNumber;
    facts.servicePack = record.szCSDVersion;
    facts.productType = record.wProductType;
    facts.suiteMask = record.wSuiteMask;
    facts.nativeArchitecture = NativeArchitecture();
    SYSTEM_INFO info{};
    ::GetSystemInfo(&info);
    facts.architecture = info.wProcessorArchitecture;
    facts.isServer2003R2 = ::GetSystemMetrics(SM_SERVERR2) != 0;
    return facts;
}

std::wstring SystemName(const SystemFacts& facts)
{
    // Servers of this version share the workstation's name here, and either query tells the version.
    return IsNtVersion(facts, 6, 0) ? L"Windows Vista" : FullName(facts);
}

std::wstring SystemVersion(const SystemFacts& facts)
{
    const auto number = [](DWORD value) { return static_cast<long>(value); };
    return FormatText(L"%d. %d.%d", {number(facts.major), number(facts.minor), number(facts.build)});
}
