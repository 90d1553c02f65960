#include "localmapi/MsgStore.h"

#include "localmapi/storage/StoreError.h"
#include "tests/localmapi/StoreObjects.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace
{
using testing::ElementsAre;

class MsgStore : public StoreObjects
{
protected:
    ENTRYID* Borrow(Bytes& bytes) { return reinterpret_cast<ENTRYID*>(bytes.data()); }
    ComPtr<IMAPIFolder> OpenByProperty(ULONG tag)
    {
        Bytes entryId = ReadBinary(*store.Get(), tag);
        ULONG type = 0;
        ComPtr<IUnknown> opened;
        EXPECT_EQ(
            store->OpenEntry(static_cast<ULONG>(entryId.size()), Borrow(entryId), nullptr, 0, &type, &opened),
            S_OK);
        EXPECT_EQ(type, static_cast<ULONG>(MAPI_FOLDER));
        ComPtr<IMAPIFolder> folder;
        opened->QueryInterface(IID_IMAPIFolder, &folder);
        return folder;
    }
};

TEST_F(MsgStore, NamesItsSpecialFolders)
{
    EXPECT_EQ(ReadText(*OpenByProperty(PR_IPM_SUBTREE_ENTRYID).Get(), PR_DISPLAY_NAME_W),
              L"Top of Personal Folders");
    EXPECT_EQ(ReadText(*OpenByProperty(PR_IPM_OUTBOX_ENTRYID).Get(), PR_DISPLAY_NAME_W), L"Outbox");
    EXPECT_EQ(ReadText(*OpenByProperty(PR_IPM_SENTMAIL_ENTRYID).Get(), PR_DISPLAY_NAME_W), L"Sent Items");
    EXPECT_EQ(ReadText(*OpenByProperty(PR_IPM_WASTEBASKET_ENTRYID).Get(), PR_DISPLAY_NAME_W),
              L"Deleted Items");
}

TEST_F(MsgStore, IsTheDefaultStoreAndSpeaksUnicode)
{
    constexpr LONG unicodeOk = 0x00040000;

    EXPECT_EQ(ReadText(*store.Get(), PR_DISPLAY_NAME_W), L"Local Mail");
    EXPECT_EQ(ReadLong(*store.Get(), PR_DEFAULT_STORE), 1);
    EXPECT_EQ(ReadLong(*store.Get(), PR_STORE_SUPPORT_MASK) & unicodeOk, unicodeOk);
}

TEST_F(MsgStore, OpensTheRootForNoEntryId)
{
    ULONG type = 0;
    ComPtr<IUnknown> opened;

    ASSERT_EQ(store->OpenEntry(0, nullptr, nullptr, 0, &type, &opened), S_OK);

    ComPtr<IMAPIFolder> root;
    ASSERT_EQ(opened->QueryInterface(IID_IMAPIFolder, &root), S_OK);
    EXPECT_EQ(ReadText(*root.Get(), PR_DISPLAY_NAME_W), L"Root");
    EXPECT_EQ(ReadLong(*root.Get(), PR_FOLDER_TYPE), FOLDER_ROOT);
}

TEST_F(MsgStore, ReceivesMailInTheInbox)
{
    ULONG size = 0;
    ENTRYID* entryId = nullptr;
    wchar_t name[] = L"IPM.Note";

    ASSERT_EQ(store->GetReceiveFolder(name, MAPI_UNICODE, &size, &entryId, nullptr), S_OK);

    const MapiBuffer<ENTRYID> owned(entryId);
    const auto* bytes = reinterpret_cast<const BYTE*>(entryId);
    EXPECT_EQ(Bytes(bytes, bytes + size), FolderEntryId(folder_id::inbox));
}

TEST_F(MsgStore, RefusesEntryIdsThatNameNothing)
{
    Bytes gone = MessageEntryId(4711);
    Bytes tooShort(5);
    ComPtr<IUnknown> opened;
    ULONG type = 0;

    EXPECT_EQ(store->OpenEntry(static_cast<ULONG>(gone.size()), Borrow(gone), nullptr, 0, &type, &opened),
              MAPI_E_NOT_FOUND);
    EXPECT_EQ(
        store->OpenEntry(static_cast<ULONG>(tooShort.size()), Borrow(tooShort), nullptr, 0, &type, &opened),
        MAPI_E_INVALID_ENTRYID);
    EXPECT_EQ(opened, nullptr);
}

TEST_F(MsgStore, TellsWhyItRefused)
{
    Bytes gone = MessageEntryId(4711);
    ComPtr<IUnknown> opened;
    ULONG type = 0;
    const HRESULT result =
        store->OpenEntry(static_cast<ULONG>(gone.size()), Borrow(gone), nullptr, 0, &type, &opened);

    MAPIERROR* error = nullptr;
    ASSERT_EQ(store->GetLastError(result, MAPI_UNICODE, &error), S_OK);

    const MapiBuffer<MAPIERROR> owned(error);
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error->lpszError, L"The message is not in the mail store any more.");
}

TEST_F(MsgStore, ComparesEntryIds)
{
    Bytes inbox = FolderEntryId(folder_id::inbox);
    Bytes outbox = FolderEntryId(folder_id::outbox);
    const auto size = static_cast<ULONG>(inbox.size());
    ULONG same = 7;
    ULONG different = 7;

    store->CompareEntryIDs(size, Borrow(inbox), size, Borrow(inbox), 0, &same);
    store->CompareEntryIDs(size, Borrow(inbox), size, Borrow(outbox), 0, &different);

    EXPECT_EQ(same, 1u);
    EXPECT_EQ(different, 0u);
}

TEST_F(MsgStore, NamesPropertiesBothWays)
{
    GUID set = PS_PUBLIC_STRINGS;
    wchar_t text[] = L"Keywords";
    MAPINAMEID name{};
    name.lpguid = &set;
    name.ulKind = MNID_STRING;
    name.Kind.lpwstrName = text;
    MAPINAMEID* names[] = {&name};

    SPropTagArray* unknown = nullptr;
    EXPECT_EQ(store->GetIDsFromNames(1, names, 0, &unknown), MAPI_W_ERRORS_RETURNED);
    const MapiBuffer<SPropTagArray> ownedUnknown(unknown);
    SPropTagArray* made = nullptr;
    ASSERT_EQ(store->GetIDsFromNames(1, names, MAPI_CREATE, &made), S_OK);
    const MapiBuffer<SPropTagArray> ownedMade(made);
    ULONG count = 0;
    MAPINAMEID** found = nullptr;
    ASSERT_EQ(store->GetNamesFromIDs(&made, nullptr, 0, &count, &found), S_OK);
    const MapiBuffer<MAPINAMEID*> ownedFound(found);

    EXPECT_EQ(PROP_TYPE(unknown->aulPropTag[0]), static_cast<ULONG>(PT_ERROR));
    EXPECT_GE(PROP_ID(made->aulPropTag[0]), 0x8000u);
    ASSERT_EQ(count, 1u);
    EXPECT_STREQ(found[0]->Kind.lpwstrName, L"Keywords");
    EXPECT_EQ(*found[0]->lpguid, set);
}

TEST_F(MsgStore, ServesSeveralThreadsAtOnce)
{
    constexpr int threadCount = 4;
    constexpr int messagesEach = 10;
    std::vector<std::vector<Bytes>> entryIds(threadCount);
    for (std::vector<Bytes>& own : entryIds)
    {
        for (int i = 0; i < messagesEach; ++i)
            own.push_back(MessageEntryId(AddMessage(folder_id::inbox, "shared")));
    }
    const auto inbox = OpenFolder(folder_id::inbox);
    const auto outbox = OpenFolder(folder_id::outbox);
    std::atomic<int> failures = 0;
    {
        std::vector<std::jthread> threads;
        for (const std::vector<Bytes>& own : entryIds)
            threads.emplace_back(
                [&]
                {
                    for (const Bytes& entryId : own)
                    {
                        EntryList list({entryId});
                        failures += inbox->CopyMessages(list, nullptr, outbox.Get(), 0, nullptr,
                                                        MESSAGE_MOVE) != S_OK;
                        failures += Subjects(*outbox.Get()).empty();
                    }
                });
    }

    EXPECT_EQ(failures, 0);
    EXPECT_EQ(ReadLong(*inbox.Get(), PR_CONTENT_COUNT), 0);
    EXPECT_EQ(ReadLong(*outbox.Get(), PR_CONTENT_COUNT), threadCount * messagesEach);
}

TEST(OpeningAStoreObject, FailsForAFileThatIsNotThere)
{
    const TemporaryStore store;
    const std::filesystem::path missing = store.Folder() / "missing.db";

    EXPECT_THROW(OpenStoreObject(missing.wstring()), StoreError);
}

class StoreOfTheOtherService : public testing::Test
{
protected:
    StoreOfTheOtherService()
    {
        file.Run("UPDATE setting SET value = 'MSEMS' WHERE name = 'service_name'");
        file.AddMessage(folder_id::inbox, "hello");
        store = OpenStoreObject((file.Folder() / "store.db").wstring());
    }

    ComPtr<IUnknown> Open(Bytes entryId) const
    {
        ULONG type = 0;
        ComPtr<IUnknown> object;
        EXPECT_EQ(store->OpenEntry(static_cast<ULONG>(entryId.size()),
                                   reinterpret_cast<ENTRYID*>(entryId.data()), nullptr, 0, &type, &object),
                  S_OK);
        return object;
    }

    // What the Inbox's one row shows under the tag.
    Bytes ShownInTable(ULONG tag) const
    {
        ULONG size = 0;
        ENTRYID* inboxId = nullptr;
        EXPECT_EQ(store->GetReceiveFolder(nullptr, 0, &size, &inboxId, nullptr), S_OK);
        const MapiBuffer<ENTRYID> owner(inboxId);
        const auto* bytes = reinterpret_cast<const BYTE*>(inboxId);
        const ComPtr<IUnknown> inbox = Open(Bytes(bytes, bytes + size));
        ComPtr<IMAPITable> table;
        EXPECT_EQ(static_cast<IMAPIFolder*>(inbox.Get())->GetContentsTable(0, &table), S_OK);
        const RowSet rows = ReadTable(*table.Get(), {tag});
        const SBinary& shown = rows->aRow[0].lpProps[0].Value.bin;
        return Bytes(shown.lpb, shown.lpb + shown.cb);
    }

    static constexpr ULONG longTermEntryId = 0x66700102;
    TemporaryStore file;
    ComPtr<IMsgStore> store;
};

TEST_F(StoreOfTheOtherService, ShowsShortTermIdsInItsTablesAndLongTermOnesBesideThem)
{
    const Bytes shortTerm = ShownInTable(PR_ENTRYID);
    const Bytes longTerm = ShownInTable(longTermEntryId);

    EXPECT_EQ(shortTerm[0], MAPI_SHORTTERM);
    EXPECT_EQ(longTerm[0], 0);
}

TEST_F(StoreOfTheOtherService, OpensTheSameMessageByEitherId)
{
    const ComPtr<IUnknown> byShortTerm = Open(ShownInTable(PR_ENTRYID));
    const ComPtr<IUnknown> byLongTerm = Open(ShownInTable(longTermEntryId));

    EXPECT_EQ(ReadText(*static_cast<IMessage*>(byShortTerm.Get()), PR_SUBJECT_W), L"hello");
    EXPECT_EQ(ReadText(*static_cast<IMessage*>(byLongTerm.Get()), PR_SUBJECT_W), L"hello");
}

TEST_F(StoreOfTheOtherService, LetsAnOpenedMessageKnowItsLongTermIdAlone)
{
    const ComPtr<IUnknown> message = Open(ShownInTable(PR_ENTRYID));

    const Bytes own = ReadBinary(*static_cast<IMessage*>(message.Get()), PR_ENTRYID);

    EXPECT_EQ(own, ShownInTable(longTermEntryId));
}
}    // namespace
