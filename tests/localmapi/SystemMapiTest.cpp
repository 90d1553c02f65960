#include "tests/localmapi/SystemMapi.h"

#include "localmapi/EntryId.h"
#include "localmapi/MapiMemory.h"
#include "localmapi/TextConversion.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"

#include <mapicode.h>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <optional>
#include <thread>

namespace
{
using Microsoft::WRL::ComPtr;

class SystemMapiSession : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(mapi.Initialize(), S_OK);
        ASSERT_EQ(mapi.Logon(L"Test Profile", &session), S_OK);
    }

    void TearDown() override
    {
        session.Reset();
        mapi.Uninitialize();
    }

    // The first row of a table, with these columns.
    RowSet FirstRow(IMAPITable* table, std::vector<ULONG> tags, SRestriction* restriction = nullptr)
    {
        SizedSPropTagArray(4, columns) = {static_cast<ULONG>(tags.size()), {}};
        std::copy(tags.begin(), tags.end(), columns.aulPropTag);
        SRowSet* rows = nullptr;
        EXPECT_EQ(mapi.QueryAllRows(table, reinterpret_cast<SPropTagArray*>(&columns), restriction, 0, &rows),
                  S_OK);
        if (!rows || rows->cRows != 1)
            ADD_FAILURE() << "one row was expected";
        return RowSet(rows);
    }

    Blob StoreEntryId()
    {
        ComPtr<IMAPITable> table;
        EXPECT_EQ(session->GetMsgStoresTable(0, &table), S_OK);
        const RowSet row = FirstRow(table.Get(), {PR_ENTRYID});
        const SBinary& entryId = row->aRow[0].lpProps[0].Value.bin;
        return Blob(entryId.lpb, entryId.lpb + entryId.cb);
    }

    HRESULT OpenStore(Blob entryId, ComPtr<IMsgStore>& opened)
    {
        return session->OpenMsgStore(0, static_cast<ULONG>(entryId.size()),
                                     reinterpret_cast<ENTRYID*>(entryId.data()), nullptr, MDB_WRITE, &opened);
    }

    HRESULT OpenEntry(Blob entryId, ULONG& type, ComPtr<IUnknown>& object)
    {
        return session->OpenEntry(static_cast<ULONG>(entryId.size()),
                                  reinterpret_cast<ENTRYID*>(entryId.data()), nullptr, MAPI_MODIFY, &type,
                                  &object);
    }

    ComPtr<IMAPIFolder> OpenFolder(std::int64_t id)
    {
        ULONG type = 0;
        ComPtr<IUnknown> opened;
        ComPtr<IMAPIFolder> folder;
        EXPECT_EQ(OpenEntry(EncodeEntryId({Uid(), EntryKind::Folder, id}), type, opened), S_OK);
        EXPECT_EQ(opened->QueryInterface(IID_IMAPIFolder, &folder), S_OK);
        return folder;
    }

    std::wstring LastText(HRESULT result)
    {
        MAPIERROR* error = nullptr;
        EXPECT_EQ(session->GetLastError(result, MAPI_UNICODE, &error), S_OK);
        const std::wstring text = error ? reinterpret_cast<const wchar_t*>(error->lpszError) : L"<none>";
        mapi.Free(error);
        return text;
    }

    StoreUid Uid() const
    {
        const Blob bytes = store.Open()->ReadUid();
        StoreUid uid = {};
        std::copy_n(bytes.begin(), uid.size(), uid.begin());
        return uid;
    }

    TemporaryStore store;
    StoreVariable variable{WideFromUtf8(store.Path()).c_str()};
    SystemMapi mapi;
    ComPtr<IMAPISession> session;
};

Blob BlobOf(const SBinary& bytes)
{
    return Blob(bytes.lpb, bytes.lpb + bytes.cb);
}
}    // namespace

TEST_F(SystemMapiSession, ListsTheOneStoreAsTheDefault)
{
    ComPtr<IMAPITable> table;
    ASSERT_EQ(session->GetMsgStoresTable(MAPI_UNICODE, &table), S_OK);

    const RowSet row = FirstRow(table.Get(), {PR_DISPLAY_NAME_W, PR_DEFAULT_STORE, PR_RESOURCE_TYPE});

    EXPECT_STREQ(row->aRow[0].lpProps[0].Value.lpszW, L"Local Mail");
    EXPECT_TRUE(row->aRow[0].lpProps[1].Value.b);
    EXPECT_EQ(row->aRow[0].lpProps[2].Value.ul, MAPI_STORE_PROVIDER);
}

TEST_F(SystemMapiSession, OpensTheStoreThatItLists)
{
    ComPtr<IMsgStore> opened;

    ASSERT_EQ(OpenStore(StoreEntryId(), opened), S_OK);

    // What the list says of the store, the store says of itself.
    ComPtr<IMAPITable> table;
    ASSERT_EQ(session->GetMsgStoresTable(0, &table), S_OK);
    const RowSet row = FirstRow(table.Get(), {PR_ENTRYID, PR_RECORD_KEY, PR_MDB_PROVIDER});
    SizedSPropTagArray(3, tags) = {3, {PR_ENTRYID, PR_RECORD_KEY, PR_MDB_PROVIDER}};
    ULONG count = 0;
    SPropValue* read = nullptr;
    ASSERT_EQ(opened->GetProps(reinterpret_cast<SPropTagArray*>(&tags), 0, &count, &read), S_OK);
    const MapiBuffer<SPropValue> values(read);
    for (ULONG index = 0; index < 3; ++index)
        EXPECT_EQ(BlobOf(read[index].Value.bin), BlobOf(row->aRow[0].lpProps[index].Value.bin)) << index;
}

TEST_F(SystemMapiSession, OpensTheDefaultStoreWithoutAnEntryId)
{
    ComPtr<IMsgStore> opened;

    EXPECT_EQ(OpenStore({}, opened), S_OK);
    EXPECT_NE(opened, nullptr);
}

TEST_F(SystemMapiSession, RefusesAnotherStoresEntryId)
{
    const Blob foreign = EncodeEntryId({{1, 2, 3}, EntryKind::Store, 0});
    ComPtr<IMsgStore> opened;

    EXPECT_EQ(OpenStore(foreign, opened), MAPI_E_UNKNOWN_ENTRYID);
    EXPECT_EQ(opened, nullptr);
    EXPECT_EQ(LastText(MAPI_E_UNKNOWN_ENTRYID), L"The item belongs to another mail store.");
}

TEST_F(SystemMapiSession, OpensFoldersAndMessagesByTheirEntryIds)
{
    const std::int64_t message = store.AddMessage(3, "Minutes");
    ULONG folderType = 0;
    ULONG messageType = 0;
    ComPtr<IUnknown> folder;
    ComPtr<IUnknown> opened;

    EXPECT_EQ(OpenEntry(EncodeEntryId({Uid(), EntryKind::Folder, 3}), folderType, folder), S_OK);
    EXPECT_EQ(OpenEntry(EncodeEntryId({Uid(), EntryKind::Message, message}), messageType, opened), S_OK);

    EXPECT_EQ(folderType, MAPI_FOLDER);
    EXPECT_EQ(messageType, MAPI_MESSAGE);
}

TEST_F(SystemMapiSession, OpensTheStoreAsAnEntryToo)
{
    ULONG type = 0;
    ComPtr<IUnknown> opened;

    EXPECT_EQ(OpenEntry(StoreEntryId(), type, opened), S_OK);

    EXPECT_EQ(type, MAPI_STORE);
}

TEST_F(SystemMapiSession, FindsNoMessageThatIsNotThere)
{
    ULONG type = 0;
    ComPtr<IUnknown> opened;

    EXPECT_EQ(OpenEntry(EncodeEntryId({Uid(), EntryKind::Message, 12345}), type, opened), MAPI_E_NOT_FOUND);
    EXPECT_NE(LastText(MAPI_E_NOT_FOUND), L"<none>");
}

TEST_F(SystemMapiSession, RefusesEntryIdsThatAreNone)
{
    ULONG type = 0;
    ComPtr<IUnknown> opened;

    EXPECT_EQ(OpenEntry({}, type, opened), MAPI_E_INVALID_ENTRYID);
    EXPECT_EQ(OpenEntry({1, 2, 3, 4}, type, opened), MAPI_E_INVALID_ENTRYID);
    EXPECT_EQ(OpenEntry(EncodeEntryId({{9}, EntryKind::Folder, 3}), type, opened), MAPI_E_UNKNOWN_ENTRYID);
}

TEST_F(SystemMapiSession, ComparesEntryIdsByWhatTheyName)
{
    Blob longTerm = EncodeEntryId({Uid(), EntryKind::Message, 5});
    Blob shortTerm = EncodeEntryId({Uid(), EntryKind::Message, 5, true});
    Blob other = EncodeEntryId({Uid(), EntryKind::Message, 6});
    const auto same = [&](Blob& left, Blob& right)
    {
        ULONG result = 99;
        EXPECT_EQ(session->CompareEntryIDs(
                      static_cast<ULONG>(left.size()), reinterpret_cast<ENTRYID*>(left.data()),
                      static_cast<ULONG>(right.size()), reinterpret_cast<ENTRYID*>(right.data()), 0, &result),
                  S_OK);
        return result;
    };

    EXPECT_EQ(same(shortTerm, longTerm), 1u);
    EXPECT_EQ(same(shortTerm, other), 0u);
}

TEST_F(SystemMapiSession, TellsTheProfilesNameInTheStatusTable)
{
    ComPtr<IMAPITable> table;
    ASSERT_EQ(session->GetStatusTable(MAPI_UNICODE, &table), S_OK);
    SPropValue subsystem = {};
    subsystem.ulPropTag = PR_RESOURCE_TYPE;
    subsystem.Value.ul = MAPI_SUBSYSTEM;
    SRestriction restriction = {};
    restriction.rt = RES_PROPERTY;
    restriction.res.resProperty = {RELOP_EQ, PR_RESOURCE_TYPE, &subsystem};

    const RowSet row = FirstRow(table.Get(), {PR_DISPLAY_NAME_W, PR_DISPLAY_NAME_A}, &restriction);

    EXPECT_STREQ(row->aRow[0].lpProps[0].Value.lpszW, L"Test Profile");
    EXPECT_STREQ(row->aRow[0].lpProps[1].Value.lpszA, "Test Profile");
}

TEST_F(SystemMapiSession, TellsTheServicesNameFromTheStore)
{
    const auto serviceName = [&]
    {
        ComPtr<IMsgServiceAdmin> admin;
        EXPECT_EQ(session->AdminServices(0, &admin), S_OK);
        ComPtr<IMAPITable> table;
        EXPECT_EQ(admin->GetMsgServiceTable(0, &table), S_OK);
        return std::string(FirstRow(table.Get(), {PR_SERVICE_NAME_A})->aRow[0].lpProps[0].Value.lpszA);
    };
    const std::string before = serviceName();

    store.Run("UPDATE setting SET value = 'MSEMS' WHERE name = 'service_name'");

    EXPECT_EQ(before, "LocalMapi");
    EXPECT_EQ(serviceName(), "MSEMS");
}

TEST_F(SystemMapiSession, RefusesMoreRowsThanAskedFor)
{
    const ComPtr<IMAPIFolder> top = OpenFolder(2);
    ComPtr<IMAPITable> folders;
    ASSERT_EQ(top->GetHierarchyTable(0, &folders), S_OK);
    SRowSet* rows = nullptr;

    EXPECT_EQ(mapi.QueryAllRows(folders.Get(), nullptr, nullptr, 2, &rows), MAPI_E_TABLE_TOO_BIG);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(mapi.QueryAllRows(folders.Get(), nullptr, nullptr, 9, &rows), S_OK);
    EXPECT_EQ(RowSet(rows)->cRows, 9u);
}

TEST_F(SystemMapiSession, KeepsThePlaceOfARowThatIsGone)
{
    const std::int64_t first = store.AddMessage(3, "first");
    store.AddMessage(3, "second");
    ComPtr<IMAPITable> contents;
    ASSERT_EQ(OpenFolder(3)->GetContentsTable(0, &contents), S_OK);
    SizedSPropTagArray(1, columns) = {1, {PR_SUBJECT_W}};
    ASSERT_EQ(contents->SetColumns(reinterpret_cast<SPropTagArray*>(&columns), 0), S_OK);
    ASSERT_EQ(contents->SeekRow(BOOKMARK_BEGINNING, 0, nullptr), S_OK);

    store.Run("DELETE FROM message WHERE id = " + std::to_string(first));
    SRowSet* read = nullptr;
    ASSERT_EQ(contents->QueryRows(10, 0, &read), S_OK);
    const RowSet rows(read);

    ASSERT_EQ(rows->cRows, 2u);
    EXPECT_EQ(PROP_TYPE(rows->aRow[0].lpProps[0].ulPropTag), PT_ERROR);
    EXPECT_STREQ(rows->aRow[1].lpProps[0].Value.lpszW, L"second");
}

TEST_F(SystemMapiSession, HasNoAddressBook)
{
    IAddrBook* addressBook = reinterpret_cast<IAddrBook*>(this);
    ULONG size = 0;
    ENTRYID* identity = nullptr;

    EXPECT_EQ(session->OpenAddressBook(0, nullptr, 0, &addressBook), MAPI_E_NO_SUPPORT);
    EXPECT_EQ(addressBook, nullptr);
    EXPECT_EQ(session->QueryIdentity(&size, &identity), MAPI_E_NO_SUPPORT);
}

TEST_F(SystemMapiSession, AnswersNothingMoreAfterLogoff)
{
    ComPtr<IMAPITable> table;
    ComPtr<IMsgStore> opened;

    ASSERT_EQ(session->Logoff(0, 0, 0), S_OK);

    EXPECT_EQ(session->GetMsgStoresTable(0, &table), MAPI_E_NOT_INITIALIZED);
    EXPECT_EQ(OpenStore({}, opened), MAPI_E_NOT_INITIALIZED);
    EXPECT_EQ(session->Logoff(0, 0, 0), MAPI_E_NOT_INITIALIZED);
}

TEST_F(SystemMapiSession, ServesSeveralThreadsAtOnce)
{
    std::atomic<int> opened = 0;
    std::vector<std::thread> threads;

    for (int count = 0; count < 8; ++count)
        threads.emplace_back(
            [&]
            {
                mapi.Initialize();
                ComPtr<IMsgStore> mine;
                if (OpenStore({}, mine) == S_OK)
                    ++opened;
                mine.Reset();
                mapi.Uninitialize();
            });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(opened, 8);
}

TEST_F(SystemMapiSession, LetsTheLibraryGoWhenAllIsReleased)
{
    const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"LocalMapi.dll"), "DllCanUnloadNow")));
    ASSERT_TRUE(canUnload);
    ComPtr<IMsgStore> opened;
    OpenStore({}, opened);
    opened.Reset();
    session.Reset();
    const HRESULT initialized = canUnload();

    mapi.Uninitialize();
    const HRESULT ended = canUnload();

    EXPECT_EQ(initialized, S_FALSE);
    EXPECT_EQ(ended, S_OK);
    ASSERT_EQ(mapi.Initialize(), S_OK);    // for TearDown
}

namespace
{
// A session whose store's path leads nowhere good.
class SystemMapiWithoutStore : public SystemMapiSession
{
protected:
    void SetUp() override {}

    // Logs on to the store at that path and opens it.
    HRESULT OpenStoreAt(const std::filesystem::path& path)
    {
        const StoreVariable named(path.c_str());
        EXPECT_EQ(mapi.Initialize(), S_OK);
        EXPECT_EQ(mapi.Logon(L"", &session), S_OK);
        ComPtr<IMsgStore> opened;
        return OpenStore({}, opened);
    }
};
}    // namespace

TEST_F(SystemMapiWithoutStore, TellsThatTheFileIsMissingAndMakesNone)
{
    const std::filesystem::path path = store.Folder() / "nowhere.db";

    const HRESULT result = OpenStoreAt(path);

    EXPECT_TRUE(FAILED(result));
    EXPECT_EQ(LastText(result), L"The mail store " + path.wstring() + L" does not exist.");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SystemMapiWithoutStore, TellsThatTheFileIsNoStore)
{
    const std::filesystem::path path = store.Folder() / "letter.txt";
    std::ofstream(path) << std::string(5000, 'x');

    const HRESULT result = OpenStoreAt(path);

    EXPECT_EQ(result, MAPI_E_CORRUPT_STORE);
    EXPECT_NE(LastText(result).find(path.wstring()), std::wstring::npos) << Utf8FromWide(LastText(result));
}

TEST_F(SystemMapiWithoutStore, ListsAStoreThatCannotBeOpened)
{
    OpenStoreAt(store.Folder() / "nowhere.db");

    ComPtr<IMAPITable> table;
    ASSERT_EQ(session->GetMsgStoresTable(0, &table), S_OK);
    const RowSet row = FirstRow(table.Get(), {PR_DEFAULT_STORE});

    EXPECT_TRUE(row->aRow[0].lpProps[0].Value.b);
}

TEST_F(SystemMapiWithoutStore, LogsOnToNothingThatIsNotConfigured)
{
    const RegistrySandbox sandbox(HKEY_CURRENT_USER);
    const StoreVariable unnamed(nullptr);
    ASSERT_EQ(mapi.Initialize(), S_OK);

    EXPECT_EQ(mapi.Logon(L"", &session), MAPI_E_LOGON_FAILED);
    EXPECT_EQ(session, nullptr);
}

TEST_F(SystemMapiWithoutStore, LogsNobodyOnBeforeMapiIsInitialized)
{
    EXPECT_EQ(mapi.Logon(L"", &session), MAPI_E_NOT_INITIALIZED);
    ASSERT_EQ(mapi.Initialize(), S_OK);    // for TearDown
}
