#include "ui/SystemFacts.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{
SystemFacts NtVersion(DWORD major, DWORD minor, BYTE productType = VER_NT_WORKSTATION)
{
    SystemFacts facts;
    facts.query = VersionQuery::extended;
    facts.platform = VER_PLATFORM_WIN32_NT;
    facts.major = major;
    facts.minor = minor;
    facts.productType = productType;
    return facts;
}

// Version 5.2 on an x64 machine, which is told apart by more than its version.
SystemFacts Version52(BYTE productType)
{
    SystemFacts facts = NtVersion(5, 2, productType);
    facts.nativeArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
    return facts;
}

TEST(SystemName, IsVistaForEveryProductTypeOfVersion60)
{
    for (const BYTE type : {VER_NT_WORKSTATION, VER_NT_SERVER, VER_NT_DOMAIN_CONTROLLER})
        EXPECT_EQ(SystemName(NtVersion(6, 0, type)), L"Windows Vista");
}

TEST(SystemName, IsVistaAsWellWhenOnlyTheBasicRecordWasGiven)
{
    SystemFacts facts = NtVersion(6, 0, 0);
    facts.query = VersionQuery::basic;

    EXPECT_EQ(SystemName(facts), L"Windows Vista");
}

TEST(SystemName, TellsWorkstationsAndServersOfVersion61Apart)
{
    EXPECT_EQ(SystemName(NtVersion(6, 1)), L"Microsoft Windows 7 ");
    EXPECT_EQ(SystemName(NtVersion(6, 1, VER_NT_SERVER)), L"Microsoft Windows Server 2008 R2 ");
    EXPECT_EQ(SystemName(NtVersion(6, 1, VER_NT_DOMAIN_CONTROLLER)), L"Microsoft Windows Server 2008 R2 ");
}

TEST(SystemName, TakesTheFirstThatHoldsOfVersion52)
{
    SystemFacts everything = Version52(VER_NT_WORKSTATION);
    everything.isServer2003R2 = true;
    everything.suiteMask = 0xA000;
    SystemFacts storageAndHome = everything;
    storageAndHome.isServer2003R2 = false;
    SystemFacts home = storageAndHome;
    home.suiteMask = 0x8000;
    SystemFacts workstation = home;
    workstation.suiteMask = 0x5FFF;

    EXPECT_EQ(SystemName(everything), L"Microsoft Windows Server 2003 R2, ");
    EXPECT_EQ(SystemName(storageAndHome), L"Microsoft Windows Storage Server 2003");
    EXPECT_EQ(SystemName(home), L"Microsoft Windows Home Server");
    EXPECT_EQ(SystemName(workstation), L"Microsoft Windows XP Professional x64 Edition");
}

TEST(SystemName, IsServer2003ForWhateverElseVersion52Is)
{
    SystemFacts otherArchitecture = Version52(VER_NT_WORKSTATION);
    otherArchitecture.nativeArchitecture = PROCESSOR_ARCHITECTURE_IA64;

    EXPECT_EQ(SystemName(Version52(VER_NT_SERVER)), L"Microsoft Windows Server 2003, ");
    EXPECT_EQ(SystemName(otherArchitecture), L"Microsoft Windows Server 2003, ");
}

TEST(SystemName, GoesByTheMachineAndNotByWhatTheProgramSeesOfIt)
{
    SystemFacts emulated = Version52(VER_NT_WORKSTATION);
    emulated.architecture = PROCESSOR_ARCHITECTURE_INTEL;

    EXPECT_EQ(SystemName(emulated), L"Microsoft Windows XP Professional x64 Edition");
}

TEST(SystemName, GoesByWhatTheProgramSeesWhereTheMachineIsNotTold)
{
    SystemFacts facts = Version52(VER_NT_WORKSTATION);
    facts.nativeArchitecture = std::nullopt;
    facts.architecture = PROCESSOR_ARCHITECTURE_AMD64;
    SystemFacts narrow = facts;
    narrow.architecture = PROCESSOR_ARCHITECTURE_INTEL;

    EXPECT_EQ(SystemName(facts), L"Microsoft Windows XP Professional x64 Edition");
    EXPECT_EQ(SystemName(narrow), L"Microsoft Windows Server 2003, ");
}

TEST(SystemName, KnowsTheFirstTwoOfVersion5)
{
    EXPECT_EQ(SystemName(NtVersion(5, 1)), L"Microsoft Windows XP ");
    EXPECT_EQ(SystemName(NtVersion(5, 0, VER_NT_SERVER)), L"Microsoft Windows 2000 ");
}

TEST(SystemName, IsTheMakerAloneForVersionsItDoesNotKnow)
{
    for (const auto& [major, minor] : {std::pair{6, 2}, {6, 3}, {10, 0}, {5, 3}, {7, 0}, {7, 1}})
        EXPECT_EQ(SystemName(NtVersion(major, minor)), L"Microsoft ") << major << "." << minor;
}

TEST(SystemName, IsEmptyForOlderSystems)
{
    EXPECT_EQ(SystemName(NtVersion(4, 0)), L"");
    EXPECT_EQ(SystemName(NtVersion(3, 51)), L"");
}

TEST(SystemName, IsEmptyForSystemsNotOfTheNtFamily)
{
    for (const DWORD version : {5, 6})
    {
        SystemFacts facts = NtVersion(version, 0);
        facts.platform = VER_PLATFORM_WIN32_WINDOWS;
        EXPECT_EQ(SystemName(facts), L"");
    }
}

TEST(SystemName, IsEmptyWithoutTheExtendedRecord)
{
    SystemFacts basic = NtVersion(6, 1);
    basic.query = VersionQuery::basic;

    EXPECT_EQ(SystemName(basic), L"");
    EXPECT_EQ(SystemName(SystemFacts()), L"");
}

TEST(SystemVersion, HasABlankAfterTheFirstPointOnly)
{
    SystemFacts facts = NtVersion(6, 1);
    facts.build = 7601;

    EXPECT_EQ(SystemVersion(facts), L"6. 1.7601");
}

TEST(SystemVersion, IsAllZeroWhenTheQueriesFailed)
{
    EXPECT_EQ(SystemVersion(SystemFacts()), L"0. 0.0");
}

TEST(SystemFactsOfThisMachine, AgreeWithTheVersionRecord)
{
    OSVERSIONINFOEXW record{};
    record.dwOSVersionInfoSize = sizeof record;
    ASSERT_TRUE(::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&record)));

    const SystemFacts facts = ReadSystemFacts();

    EXPECT_EQ(facts.query, VersionQuery::extended);
    EXPECT_EQ(facts.platform, static_cast<DWORD>(VER_PLATFORM_WIN32_NT));
    EXPECT_EQ(facts.major, record.dwMajorVersion);
    EXPECT_EQ(facts.minor, record.dwMinorVersion);
    EXPECT_EQ(facts.build, record.dwBuildNumber);
    EXPECT_EQ(facts.servicePack, record.szCSDVersion);
    EXPECT_EQ(facts.productType, record.wProductType);
    EXPECT_EQ(facts.suiteMask, record.wSuiteMask);
}

TEST(SystemFactsOfThisMachine, NameTheProcessor)
{
    SYSTEM_INFO info{};
    ::GetNativeSystemInfo(&info);

    const SystemFacts facts = ReadSystemFacts();

    EXPECT_EQ(facts.nativeArchitecture, info.wProcessorArchitecture);
    ::GetSystemInfo(&info);
    EXPECT_EQ(facts.architecture, info.wProcessorArchitecture);
}
}    // namespace
