#include "store/MapiHelperStore.h"

#include "tests/store/MapiHelperFixture.h"

#include <gmock/gmock.h>

#include <mapitags.h>

#include <algorithm>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{
// The profile has the Exchange service, so that its flag tells whether the check was reached.
class MapiHelperStore : public MapiHelperFixture
{
protected:
    MapiHelperStore() { mail.serviceRows.push_back({{PR_SERVICE_NAME_A, std::string("MSEMS")}}); }

    FakeStore& Mailbox() { return mail.stores[1]; }
    Row& MailboxRow() { return mail.storeRows[1]; }

    void Remove(Row& row, ULONG tag)
    {
        std::erase_if(row, [tag](const Column& column) { return column.tag == tag; });
    }
    void Set(Row& row, const Column& column)
    {
        Remove(row, column.tag);
        row.push_back(column);
    }

    // A third store that is the default too, with ids of its own.
    FakeStore& AddSecondDefault()
    {
        mail.storeRows.push_back(MailboxRow());
        Set(mail.storeRows.back(), {PR_ENTRYID, Bytes{3}});
        FakeStore store{.entryId = {3},
                        .properties = {{0x35DF0003, 4}, {0x35E20102, Bytes{0xA2}}, {0x35E00102, Bytes{0xA0}}},
                        .inbox = {0xA1, 0xA1, 0xA1},
                        .oneProp = {}};
        mail.stores.push_back(store);
        return mail.stores.back();
    }

    void ExpectNoFolders() const
    {
        for (const EntryIdBlock* block :
             {&helper.inboxEntryId, &helper.outboxEntryId, &helper.deletedItemsEntryId,
              &helper.sentItemsEntryId, &helper.fifthFolderEntryId, &helper.subtreeEntryId})
            EXPECT_EQ(block->GetCount(), 0u);
    }
};
}    // namespace

TEST_F(MapiHelperStore, OpensTheDefaultStoreAlone)
{
    Start();

    EXPECT_THAT(mail.calls, Contains("OpenMsgStore 2 00000010"));
    EXPECT_THAT(mail.calls, Not(Contains(StartsWith("OpenMsgStore 1"))));
    EXPECT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(publishedMapiStore, helper.defaultStore.Get());
}

TEST_F(MapiHelperStore, AsksTheListOfStoresForFourColumns)
{
    Start();

    EXPECT_THAT(mail.calls,
                Contains("HrQueryAllRows of the stores table 0FFF0102 30090003 3001001F 3400000B"));
}

TEST_F(MapiHelperStore, KeepsTheIdsOfTheSpecialFolders)
{
    Start();

    EXPECT_THAT(mail.calls, Contains("GetReceiveFolder IPM.Note"));
    EXPECT_EQ(BytesOf(helper.inboxEntryId), (Bytes{0x2A, 0}));
    EXPECT_EQ(BytesOf(helper.outboxEntryId), (Bytes{0xE2, 1, 2}));
    EXPECT_EQ(BytesOf(helper.sentItemsEntryId), (Bytes{0xE3, 1, 2, 3}));
    EXPECT_EQ(BytesOf(helper.deletedItemsEntryId), (Bytes{0xE4, 1, 2, 3, 4}));
    EXPECT_EQ(BytesOf(helper.fifthFolderEntryId), (Bytes{0xD7, 1, 2, 3, 4, 5}));
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), (Bytes{0xE0, 1}));
}

struct MaskCase
{
    const char* name;
    std::int32_t mask;
    bool outbox;
    bool sentItems;
    bool deletedItems;
    bool fifthFolder;
};

class MapiHelperFolderMask : public MapiHelperFixture, public testing::WithParamInterface<MaskCase>
{
};

TEST_P(MapiHelperFolderMask, KeepsTheFoldersThatItHas)
{
    mail.stores[1].properties[0].value = GetParam().mask;

    Start();

    EXPECT_EQ(helper.outboxEntryId.GetCount() != 0, GetParam().outbox);
    EXPECT_EQ(helper.sentItemsEntryId.GetCount() != 0, GetParam().sentItems);
    EXPECT_EQ(helper.deletedItemsEntryId.GetCount() != 0, GetParam().deletedItems);
    EXPECT_EQ(helper.fifthFolderEntryId.GetCount() != 0, GetParam().fifthFolder);
    EXPECT_NE(helper.inboxEntryId.GetCount(), 0u);
}

// The fifth folder's bits are those of its tag, 0x36D70102: 2 and 0x100 are among them, 1 and 4 are not.
INSTANTIATE_TEST_SUITE_P(Masks, MapiHelperFolderMask,
                         testing::Values(MaskCase{"Nothing", 0, false, false, false, false},
                                         MaskCase{"Bit1", 1, false, false, false, false},
                                         MaskCase{"Bit2", 2, false, false, false, true},
                                         MaskCase{"Bit4", 4, true, false, false, false},
                                         MaskCase{"Bit8", 8, false, true, false, false},
                                         MaskCase{"Bit16", 16, false, false, true, false},
                                         MaskCase{"Bit32", 32, false, false, false, false},
                                         MaskCase{"Bit0x100", 0x100, false, false, false, true},
                                         MaskCase{"Bit0x20000000", 0x20000000, false, false, false, true},
                                         MaskCase{"AllOfTheFour", 4 | 8 | 16 | 2, true, true, true, true}),
                         [](const auto& info) { return info.param.name; });

TEST_F(MapiHelperStore, KeepsNoFolderWithoutAMask)
{
    Remove(Mailbox().properties, 0x35DF0003);

    Start();

    EXPECT_EQ(helper.outboxEntryId.GetCount(), 0u);
    EXPECT_EQ(helper.deletedItemsEntryId.GetCount(), 0u);
    EXPECT_NE(helper.inboxEntryId.GetCount(), 0u);
    EXPECT_NE(helper.subtreeEntryId.GetCount(), 0u);
}

TEST_F(MapiHelperStore, KeepsTheFoldersThatCameWithoutAnError)
{
    Remove(Mailbox().properties, 0x35E20102);
    Remove(Mailbox().properties, 0x36D70102);

    Start();

    EXPECT_EQ(helper.outboxEntryId.GetCount(), 0u);
    EXPECT_EQ(helper.fifthFolderEntryId.GetCount(), 0u);
    EXPECT_EQ(BytesOf(helper.sentItemsEntryId), (Bytes{0xE3, 1, 2, 3}));
    EXPECT_EQ(BytesOf(helper.deletedItemsEntryId), (Bytes{0xE4, 1, 2, 3, 4}));
}

TEST_F(MapiHelperStore, GoesOnWithoutAListOfStores)
{
    mail.storesTable.open = MAPI_E_CALL_FAILED;

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, GoesOnWhenTheListOfStoresCannotBeRead)
{
    mail.storesTable.queryAllRows = MAPI_E_CALL_FAILED;

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, GoesOnInAProfileWithoutStores)
{
    mail.storeRows.clear();

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_EQ(publishedMapiStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, PassesOverAStoreWithoutAName)
{
    Remove(MailboxRow(), PR_DISPLAY_NAME_W);

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, PassesOverAStoreThatDoesNotSayWhetherItIsTheDefault)
{
    Remove(MailboxRow(), PR_DEFAULT_STORE);

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, PassesOverAStoreWithoutAnEntryId)
{
    Remove(MailboxRow(), PR_ENTRYID);

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_THAT(mail.calls, Not(Contains(StartsWith("OpenMsgStore"))));
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, KeepsTheLastOfTwoDefaultStores)
{
    AddSecondDefault();

    Start();

    EXPECT_THAT(mail.calls, Contains("store 2 is gone"));
    EXPECT_THAT(mail.calls, Not(Contains("store 3 is gone")));
    EXPECT_EQ(publishedMapiStore, helper.defaultStore.Get());
    EXPECT_EQ(BytesOf(helper.inboxEntryId), (Bytes{0xA1, 0xA1, 0xA1}));
    EXPECT_EQ(BytesOf(helper.outboxEntryId), Bytes{0xA2});
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), Bytes{0xA0});
    EXPECT_EQ(BytesOf(helper.sentItemsEntryId), (Bytes{0xE3, 1, 2, 3}));
}

TEST_F(MapiHelperStore, AsksForTheErrorOfAStoreThatDoesNotOpen)
{
    Mailbox().open = MAPI_E_FAILONEPROVIDER;

    Start();

    EXPECT_THAT(mail.calls, Contains("GetLastError 8004011D 80000000"));
    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_EQ(publishedMapiStore, nullptr);
    ExpectNoFolders();
    EXPECT_EQ(mail.buffers.size(), 0u);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, GoesOnWhenThereIsNoErrorToAskFor)
{
    Mailbox().open = MAPI_E_FAILONEPROVIDER;
    mail.getLastError = MAPI_E_NO_SUPPORT;

    Start();

    EXPECT_EQ(helper.defaultStore, nullptr);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, OpensTheNextDefaultWhenOneDoesNotOpen)
{
    AddSecondDefault();
    Mailbox().open = MAPI_E_FAILONEPROVIDER;

    Start();

    EXPECT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), Bytes{0xA0});
}

TEST_F(MapiHelperStore, KeepsTheFirstDefaultWhenTheNextDoesNotOpen)
{
    AddSecondDefault().open = MAPI_E_FAILONEPROVIDER;

    Start();

    EXPECT_NE(helper.defaultStore, nullptr);
    EXPECT_EQ(publishedMapiStore, helper.defaultStore.Get());
    EXPECT_EQ(BytesOf(helper.subtreeEntryId), (Bytes{0xE0, 1}));
}

TEST_F(MapiHelperStore, KeepsTheOtherFoldersWithoutAReceiveFolder)
{
    Mailbox().getReceiveFolder = MAPI_E_NOT_FOUND;

    Start();

    EXPECT_EQ(helper.inboxEntryId.GetCount(), 0u);
    EXPECT_NE(helper.outboxEntryId.GetCount(), 0u);
    EXPECT_NE(helper.subtreeEntryId.GetCount(), 0u);
}

TEST_F(MapiHelperStore, KeepsInboxAndSubtreeWhenThePropertiesCannotBeRead)
{
    Mailbox().getProps = MAPI_E_NO_ACCESS;

    Start();

    EXPECT_NE(helper.inboxEntryId.GetCount(), 0u);
    EXPECT_EQ(helper.outboxEntryId.GetCount(), 0u);
    EXPECT_EQ(helper.deletedItemsEntryId.GetCount(), 0u);
    EXPECT_NE(helper.subtreeEntryId.GetCount(), 0u);
}

TEST_F(MapiHelperStore, KeepsTheOthersWithoutASubtree)
{
    Mailbox().getOneProp = MAPI_E_NOT_FOUND;

    Start();

    EXPECT_THAT(mail.calls, Contains("HrGetOneProp 35E00102"));
    EXPECT_EQ(helper.subtreeEntryId.GetCount(), 0u);
    EXPECT_NE(helper.outboxEntryId.GetCount(), 0u);
    EXPECT_TRUE(exchangeProfile);
}

TEST_F(MapiHelperStore, KeepsNoSubtreeThatIsNotBinary)
{
    Mailbox().oneProp = Column{PROP_TAG(PT_ERROR, 0x35E0), std::int32_t(MAPI_E_NOT_FOUND)};

    Start();

    EXPECT_EQ(helper.subtreeEntryId.GetCount(), 0u);
}
