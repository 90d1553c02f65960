// The helper through the system's own mapi32.dll, over the mail client that is registered there.
#include "store/MapiHelper.h"

#include "localmapi/TextConversion.h"
#include "store/MapiOwners.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"

#include <gtest/gtest.h>

#include <mapitags.h>

#include <cstdint>
#include <vector>

using Microsoft::WRL::ComPtr;
using Bytes = std::vector<std::uint8_t>;

namespace
{
Bytes BytesOf(const EntryIdBlock& block)
{
    return Bytes(block.GetBytes(), block.GetBytes() + block.GetCount());
}

DWORD CountHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

class MapiHelperOverTheSystem : public testing::Test
{
protected:
    void Start() { StartMapiHelper(helper, exchangeProfile); }

    void NameService(const std::string& name) const
    {
        file.Run("UPDATE setting SET value = '" + name + "' WHERE name = 'service_name'");
    }

    MapiBuffer<SPropValue> Read(IMAPIProp& object, ULONG tag) const
    {
        SizedSPropTagArray(1, tags) = {1, {tag}};
        ULONG count = 0;
        SPropValue* values = nullptr;
        EXPECT_EQ(object.GetProps(reinterpret_cast<SPropTagArray*>(&tags), MAPI_UNICODE, &count, &values),
                  S_OK);
        return OwnMapiBuffer(helper, values);
    }

    // A binary property of the opened store.
    Bytes StoreBytes(ULONG tag) const
    {
        const auto value = Read(*helper.defaultStore.Get(), tag);
        return Bytes(value->Value.bin.lpb, value->Value.bin.lpb + value->Value.bin.cb);
    }

    // What the folder of that id is called.
    std::wstring FolderName(const EntryIdBlock& entryId) const
    {
        Bytes bytes = BytesOf(entryId);
        ULONG type = 0;
        ComPtr<IUnknown> opened;
        EXPECT_EQ(helper.defaultStore->OpenEntry(static_cast<ULONG>(bytes.size()),
                                                 reinterpret_cast<ENTRYID*>(bytes.data()), nullptr, 0, &type,
                                                 opened.ReleaseAndGetAddressOf()),
                  S_OK);
        if (type != MAPI_FOLDER)
            return L"<no folder>";
        return Read(*static_cast<IMAPIFolder*>(opened.Get()), PR_DISPLAY_NAME_W)->Value.lpszW;
    }

    TemporaryStore file;
    StoreVariable variable{WideFromUtf8(file.Path()).c_str()};
    MapiHelper helper;
    BOOL exchangeProfile = FALSE;
};
}    // namespace

TEST_F(MapiHelperOverTheSystem, TakesTheProfilesNameFromItsStatusRow)
{
    Start();

    EXPECT_STREQ(helper.profileName.get(), L"LocalMapi");
}

TEST_F(MapiHelperOverTheSystem, OpensTheStoreOfTheProfile)
{
    Start();

    ASSERT_NE(helper.defaultStore, nullptr);
    const Blob uid = file.Open()->ReadUid();
    EXPECT_EQ(StoreBytes(PR_RECORD_KEY), Bytes(uid.begin(), uid.end()));
}

TEST_F(MapiHelperOverTheSystem, KeepsTheIdsThatTheStoreHasUnderTheirTags)
{
    Start();

    ASSERT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), StoreBytes(0x35E00102));
    EXPECT_EQ(BytesOf(helper.outboxEntryId), StoreBytes(0x35E20102));
    EXPECT_EQ(BytesOf(helper.sentItemsEntryId), StoreBytes(0x35E30102));
    EXPECT_EQ(BytesOf(helper.deletedItemsEntryId), StoreBytes(0x35E40102));
}

TEST_F(MapiHelperOverTheSystem, KeepsIdsThatOpenTheFolders)
{
    Start();

    ASSERT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(FolderName(helper.inboxEntryId), L"Inbox");
    EXPECT_EQ(FolderName(helper.outboxEntryId), L"Outbox");
    EXPECT_EQ(FolderName(helper.subtreeEntryId), L"Top of Personal Folders");
}

// A store made to MAPI's headers has Deleted Items where the helper looks for Sent Items, and the other way
// round.
TEST_F(MapiHelperOverTheSystem, KeepsDeletedAndSentItemsUnderEachOthersNames)
{
    Start();

    ASSERT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(FolderName(helper.deletedItemsEntryId), L"Sent Items");
    EXPECT_EQ(FolderName(helper.sentItemsEntryId), L"Deleted Items");
}

TEST_F(MapiHelperOverTheSystem, KeepsNoFifthFolderOfAStoreThatHasNone)
{
    Start();

    EXPECT_EQ(helper.fifthFolderEntryId.GetCount(), 0u);
}

TEST_F(MapiHelperOverTheSystem, LeavesTheExchangeFlagInAProfileWithoutExchange)
{
    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
}

TEST_F(MapiHelperOverTheSystem, SetsTheExchangeFlagForTheExchangeService)
{
    NameService("MSEMS");

    Start();

    EXPECT_EQ(exchangeProfile, TRUE);
}

TEST_F(MapiHelperOverTheSystem, LeavesTheExchangeFlagForAServiceInLowerCase)
{
    NameService("msems");

    Start();

    EXPECT_EQ(exchangeProfile, FALSE);
}

TEST_F(MapiHelperOverTheSystem, GoesOnWithoutItsStoreFile)
{
    SetEnvironmentVariableW(L"LOCALMAPI_STORE", L"C:\\no such folder\\mail.db");

    Start();

    EXPECT_NE(helper.mapiSession, nullptr);
    EXPECT_STREQ(helper.profileName.get(), L"LocalMapi");
    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_EQ(exchangeProfile, FALSE);
}

TEST_F(MapiHelperOverTheSystem, LeavesTheStoreFileToOthersOnceStopped)
{
    Start();

    StopMapiHelper(helper);

    std::error_code error;
    EXPECT_TRUE(std::filesystem::remove(file.Folder() / "store.db", error)) << error.message();
}

TEST_F(MapiHelperOverTheSystem, HoldsNothingMoreAfterTwoHundredRounds)
{
    Start();
    StopMapiHelper(helper);
    const DWORD handlesBefore = CountHandles();

    for (int round = 0; round < 200; ++round)
    {
        Start();
        ASSERT_NE(helper.defaultStore, nullptr);
        StopMapiHelper(helper);
    }

    EXPECT_EQ(CountHandles(), handlesBefore);
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
    EXPECT_EQ(GetModuleHandleW(L"LocalMapi.dll"), nullptr);
}
