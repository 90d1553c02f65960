#pragma once

#include "tests/addin/LoadedLibrary.h"
#include "tests/addin/RegistrySnapshot.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <string>

inline constexpr CLSID duplicateRemoverClass = {
    0x2E1CE4E6, 0x8591, 0x4C0A, {0xA3, 0xC2, 0x46, 0xA0, 0xD2, 0xC1, 0xE3, 0x71}};
inline constexpr GUID duplicateRemoverLibrary = {
    0xFB9E5801, 0x82CC, 0x4476, {0xB5, 0xD0, 0x87, 0xA6, 0x29, 0x36, 0x80, 0x43}};
inline constexpr IID duplicateRemoverInterface = {
    0xA3869348, 0x5CFE, 0x4B76, {0x88, 0x04, 0x8E, 0xC7, 0x00, 0xCC, 0x99, 0x35}};

// The library before it is registered. What a test registers is taken back at its end.
class RegistrationFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(library);
        before = RegistrySnapshot::Take();
    }
    ~RegistrationFixture() override
    {
        library.Unregister();    // first as the test left it, then for the user
        library.Install(false, L"user");
    }

    RegistrySnapshot::Entries Added() const { return RegistrySnapshot::Take().Since(before); }
    RegistrySnapshot::Entries Removed() const { return before.Since(RegistrySnapshot::Take()); }

    static std::wstring UserAddinKey()
    {
        return L"hkcu\\software\\microsoft\\office\\outlook\\addins\\talmorequorvexoutlookduplicate.duplicat";
    }
    static bool HasClassBelow(const RegistrySnapshot::Entries& added, const std::wstring& classes)
    {
        return added.contains(classes + L"\\clsid\\{2e1ce4e6-8591-4c0a-a3c2-46a0d2c1e371}\\inprocserver32|");
    }
    static bool IsForMachine(const RegistrySnapshot::Entries& added)
    {
        return HasClassBelow(added, L"hklm\\software\\classes") &&
               !HasClassBelow(added, L"hkcu\\software\\classes");
    }
    static bool IsForUser(const RegistrySnapshot::Entries& added)
    {
        return HasClassBelow(added, L"hkcu\\software\\classes") &&
               !HasClassBelow(added, L"hklm\\software\\classes");
    }

    LoadedLibrary library;
    RegistrySnapshot before;
};
