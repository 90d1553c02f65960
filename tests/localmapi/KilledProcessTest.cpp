#include "localmapi/MsgStore.h"

#include "tests/localmapi/StoreObjects.h"
#include "tests/localmapi/ThisProgram.h"

#include <gmock/gmock.h>

#include <chrono>

// What a store is worth after the process that was changing it has been killed. The tests run their own
// program a second time as the process to be killed.
namespace
{
constexpr wchar_t storeVariable[] = L"LOCALMAPI_TEST_KILLED_STORE";
constexpr int messageCount = 60;

// Runs the one disabled test below in a process of its own, on the store named by the environment.
OwnedProcess StartMover(const std::filesystem::path& store)
{
    SetEnvironmentVariableW(storeVariable, store.c_str());
    OwnedProcess mover = StartInThisProgram(L"MovingProcess.DISABLED_MovesMessagesUntilItIsKilled");
    SetEnvironmentVariableW(storeVariable, nullptr);
    return mover;
}

class KilledProcess : public testing::Test
{
protected:
    void SetUp() override
    {
        // Contents of some pages, so that a change is more than one page written.
        file.Run("WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                 std::to_string(messageCount) +
                 ") INSERT INTO message (id, folder_id, message_class, subject, display_to, display_cc, "
                 "display_bcc) "
                 "SELECT i, 3, 'IPM.Note', hex(randomblob(600)), '', '', '' FROM n");
        file.Run("INSERT INTO message_text (message_id, body) SELECT id, hex(randomblob(3000)) FROM message");
    }
    std::int64_t Changes() const { return file.ReadInteger("SELECT sum(content_change_number) FROM folder"); }

    // Kills a process that moves messages after it has made some changes.
    void MoveAndKill()
    {
        const std::int64_t enough = Changes() + 10;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        const OwnedProcess mover = StartMover(file.Folder() / "store.db");
        while (Changes() < enough && std::chrono::steady_clock::now() < deadline)
            ASSERT_EQ(WaitForSingleObject(mover.get(), 1), static_cast<DWORD>(WAIT_TIMEOUT))
                << "ended by itself";
        ASSERT_GE(Changes(), enough);
        TerminateProcess(mover.get(), 1);
        ASSERT_EQ(WaitForSingleObject(mover.get(), 60000), WAIT_OBJECT_0);
    }

    TemporaryStore file;
};

TEST_F(KilledProcess, LeavesAStoreWithEveryMessageInExactlyOneFolder)
{
    for (int round = 0; round < 5; ++round)
    {
        ASSERT_NO_FATAL_FAILURE(MoveAndKill());

        const auto store = OpenStoreObject((file.Folder() / "store.db").wstring());
        EXPECT_EQ(ReadText(*store.Get(), PR_DISPLAY_NAME_W), L"Local Mail");
        EXPECT_EQ(ReadLines(file, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
        EXPECT_EQ(file.ReadInteger("SELECT count(*) FROM message WHERE folder_id IN (3, 6)"), messageCount);
        EXPECT_EQ(file.ReadInteger("SELECT count(DISTINCT subject) FROM message"), messageCount);
        EXPECT_EQ(file.ReadInteger("SELECT count(*) FROM message_text JOIN message ON id = message_id"),
                  messageCount);
    }
}

// The process that is killed: moves each message of the Inbox to Deleted Items, and back, and again.
class MovingProcess : public testing::Test
{
protected:
    ComPtr<IMAPIFolder> OpenFolder(const Bytes& entryId) const
    {
        ULONG type = 0;
        ComPtr<IUnknown> opened;
        ComPtr<IMAPIFolder> folder;
        auto* id = reinterpret_cast<ENTRYID*>(const_cast<BYTE*>(entryId.data()));
        store->OpenEntry(static_cast<ULONG>(entryId.size()), id, nullptr, MAPI_BEST_ACCESS, &type, &opened);
        opened->QueryInterface(IID_IMAPIFolder, &folder);
        return folder;
    }
    std::vector<Bytes> EntryIds(IMAPIFolder& folder) const
    {
        ComPtr<IMAPITable> table;
        folder.GetContentsTable(0, &table);
        const RowSet rows = ReadTable(*table.Get(), {PR_ENTRYID});
        std::vector<Bytes> ids;
        for (const SRow& row : std::span(rows->aRow, rows->cRows))
            ids.emplace_back(row.lpProps[0].Value.bin.lpb,
                             row.lpProps[0].Value.bin.lpb + row.lpProps[0].Value.bin.cb);
        return ids;
    }
    void MoveAll(IMAPIFolder& from, IMAPIFolder& to) const
    {
        for (const Bytes& entryId : EntryIds(from))
        {
            EntryList list({entryId});
            ASSERT_EQ(from.CopyMessages(list, nullptr, &to, 0, nullptr, MESSAGE_MOVE), S_OK);
        }
    }

    ComPtr<IMsgStore> store;
};

TEST_F(MovingProcess, DISABLED_MovesMessagesUntilItIsKilled)
{
    wchar_t path[MAX_PATH] = L"";
    ASSERT_NE(GetEnvironmentVariableW(storeVariable, path, MAX_PATH), 0u);
    store = OpenStoreObject(path);
    ULONG size = 0;
    ENTRYID* entryId = nullptr;
    ASSERT_EQ(store->GetReceiveFolder(nullptr, 0, &size, &entryId, nullptr), S_OK);
    const MapiBuffer<ENTRYID> owned(entryId);
    const auto* bytes = reinterpret_cast<const BYTE*>(entryId);
    const auto inbox = OpenFolder(Bytes(bytes, bytes + size));
    const auto deleted = OpenFolder(ReadBinary(*store.Get(), PR_IPM_WASTEBASKET_ENTRYID));

    // Not for ever: nobody may be left to kill it.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(90);
    while (!HasFatalFailure() && std::chrono::steady_clock::now() < deadline)
    {
        MoveAll(*inbox.Get(), *deleted.Get());
        MoveAll(*deleted.Get(), *inbox.Get());
    }
}
}    // namespace
