// Random calls of the registered server's objects, over a real store.
#include "tests/FuzzSeeds.h"
#include "tests/quorvex/DispatchCaller.h"
#include "tests/quorvex/ServerFixture.h"

#include <cstdio>
#include <cstdlib>

namespace
{
constexpr int callsASeed = 1500;
constexpr int messageCount = 5;
constexpr std::size_t slackInBlocks = 40;    // of threads and caches of the system's

class DispatchFuzz : public Server
{
protected:
    void FillStore()
    {
        for (int id = 1; id <= messageCount; ++id)
            store.AddMessage(id, inboxId, "Number " + std::to_string(id % 3), "We met.");
    }

    // Blocks in use on the process's heap, on which every module here allocates.
    static std::size_t CountBlocks()
    {
        PROCESS_HEAP_ENTRY entry{};
        std::size_t blocks = 0;
        while (HeapWalk(GetProcessHeap(), &entry))
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        return blocks;
    }

    int CountMessages() { return std::atoi(store.Ask("SELECT count(*) FROM message").c_str()); }

    // DllCanUnloadNow of a module that is loaded.
    static HRESULT CanUnload(const wchar_t* module)
    {
        using CanUnloadNow = HRESULT(WINAPI*)();
        const auto canUnload = reinterpret_cast<CanUnloadNow>(
            reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(module), "DllCanUnloadNow")));
        return canUnload ? canUnload() : E_FAIL;
    }

    void CallWith(std::uint32_t seed)
    {
        store.Run("DELETE FROM message; DELETE FROM attachment_data");
        FillStore();
        LogOn();
        {
            DispatchCaller caller(seed, session);
            caller.Call(callsASeed);
            EXPECT_GT(caller.Succeeded(), callsASeed / 20);    // else the calls got nowhere
            EXPECT_GE(CountMessages(), messageCount - caller.DeletedForGood());
            EXPECT_LE(CountMessages(), messageCount + caller.Copied());
        }
        session.Reset();
        EXPECT_EQ(CanUnload(L"QuorvexDll.dll"), S_OK);
        EXPECT_EQ(store.Ask("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(store.Ask("PRAGMA foreign_key_check"), "(no row)");
    }
};

// The first rounds fill what is kept for the life of the process.
TEST_F(DispatchFuzz, LeavesNothingOnTheHeap)
{
    std::size_t blocks[4];
    for (std::size_t& after : blocks)
    {
        CallWith(1);
        after = CountBlocks();
    }

    std::printf("blocks after each round: %zu %zu %zu %zu\n", blocks[0], blocks[1], blocks[2], blocks[3]);
    EXPECT_LE(blocks[3], blocks[2] + slackInBlocks);
}

// What opens a message by its id looks at each of these before it is used.
TEST_F(DispatchFuzz, OpensNothingByAnIdThatNamesNoMessage)
{
    store.AddMessage(1, inboxId, "Minutes", "We met.");
    LogOn();
    const std::wstring whole =
        automation::TextOf(automation::Get(Item(L"Inbox", 1).Get(), dispid::mailItem::entryId));
    const auto open = [&](const std::wstring& id)
    {
        return automation::Invoke(session.Get(), dispid::session::getItemFromId, DISPATCH_METHOD,
                                  {id.c_str(), L"", 16L})
            .result;
    };
    EXPECT_EQ(open(whole), S_OK);

    for (std::size_t length = 0; length <= 128; ++length)
    {
        std::wstring id = whole;
        id.resize(length, L'0');
        EXPECT_EQ(open(id), length == whole.size() ? S_OK : DISP_E_EXCEPTION) << length;
    }
    for (std::size_t place = 0; place < whole.size(); ++place)
    {
        std::wstring id = whole;
        id[place] = id[place] == L'4' ? L'8' : L'4';
        EXPECT_EQ(open(id), DISP_E_EXCEPTION) << place;
    }
    EXPECT_EQ(open(automation::TextOf(automation::Get(Folder(L"Inbox").Get(), dispid::folder::entryId))),
              DISP_E_EXCEPTION);
    store.Run("DELETE FROM message");
    EXPECT_EQ(open(whole), DISP_E_EXCEPTION);
}

TEST_F(DispatchFuzz, AnswersEveryCallCleanlyAndLosesNothing)
{
    FuzzSeeds seeds;
    do
    {
        SCOPED_TRACE(seeds.Name());
        std::printf("seed %u\n", static_cast<unsigned>(seeds.Current()));
        std::fflush(stdout);
        CallWith(seeds.Current());
    } while (!HasFailure() && seeds.Next());
}
}    // namespace
