#pragma once

#include "store/MapiHelper.h"
#include "tests/store/FakeProfile.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

// The tests' own mapi32.dll in one of its builds, found before the system's while this lives.
class TestMapi32Folder
{
public:
    explicit TestMapi32Folder(const wchar_t* variant)
    {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        SetDllDirectoryW((std::filesystem::path(program).parent_path() / L"mapi32" / variant).c_str());
    }
    TestMapi32Folder(const TestMapi32Folder&) = delete;
    TestMapi32Folder& operator=(const TestMapi32Folder&) = delete;
    ~TestMapi32Folder() { SetDllDirectoryW(nullptr); }
};

inline Bytes BytesOf(const EntryIdBlock& block)
{
    return Bytes(block.GetBytes(), block.GetBytes() + block.GetCount());
}

inline void ExpectInactive(const MapiHelper& helper)
{
    EXPECT_EQ(helper.mapiModule, nullptr);
    EXPECT_EQ(helper.mapiInitialize, nullptr);
    EXPECT_EQ(helper.mapiUninitialize, nullptr);
    EXPECT_EQ(helper.mapiLogonEx, nullptr);
    EXPECT_EQ(helper.mapiFreeBuffer, nullptr);
    EXPECT_EQ(helper.hrQueryAllRows, nullptr);
    EXPECT_EQ(helper.hrGetOneProp, nullptr);
    EXPECT_EQ(helper.mapiSession, nullptr);
    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_EQ(helper.profileName, nullptr);
    for (const EntryIdBlock* block :
         {&helper.inboxEntryId, &helper.outboxEntryId, &helper.deletedItemsEntryId, &helper.sentItemsEntryId,
          &helper.fifthFolderEntryId, &helper.subtreeEntryId})
        EXPECT_EQ(block->GetCount(), 0u);
    EXPECT_EQ(publishedMapiSession, nullptr);
    EXPECT_EQ(publishedMapiStore, nullptr);
    EXPECT_EQ(publishedMapiFreeBuffer, nullptr);
    EXPECT_EQ(publishedHrQueryAllRows, nullptr);
    EXPECT_EQ(publishedHrGetOneProp, nullptr);
}

// Nothing is held of the profile any more, and what was had was given back once.
inline void ExpectAllGivenBack(const FakeProfile& mail)
{
    EXPECT_EQ(mail.objects, 0);
    EXPECT_EQ(mail.buffers.size(), 0u);
    EXPECT_EQ(mail.wrongFrees, 0);
    EXPECT_EQ(mail.initialized, 0);
    EXPECT_EQ(mail.logoffs, mail.logons);
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

// A helper over a profile of the test's making. Every test ends with all given back.
class MapiHelperFixture : public testing::Test
{
protected:
    void TearDown() override
    {
        StopMapiHelper(helper);
        ExpectInactive(helper);
        ExpectAllGivenBack(mail);
    }

    void Start() { StartMapiHelper(helper, exchangeProfile); }

    TestMapi32Folder folder{L"decorated"};
    FakeProfile mail;
    MapiHelper helper;
    BOOL exchangeProfile = FALSE;
};
