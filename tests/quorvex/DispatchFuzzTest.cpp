// Random calls of the registered server's objects, over a real store. TQODR_FUZZ_SEED=N makes those of that
// seed again; TQODR_FUZZ_SECONDS says for how long new seeds are tried (2 when it is not set).
#include "tests/quorvex/DispatchCaller.h"
#include "tests/quorvex/ServerFixture.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace
{
constexpr int callsASeed = 1500;
constexpr int messageCount = 5;

class DispatchFuzz : public Server
{
protected:
    void FillStore()
    {
        for (int id = 1; id <= messageCount; ++id)
            store.AddMessage(id, inboxId, "Number " + std::to_string(id % 3), "We met.");
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

std::uint32_t FirstSeed()
{
    if (const char* seed = std::getenv("TQODR_FUZZ_SEED"))
        return static_cast<std::uint32_t>(std::strtoul(seed, nullptr, 10));
    return 1;
}

std::chrono::seconds TimeToSpend()
{
    if (std::getenv("TQODR_FUZZ_SEED"))
        return {};
    const char* seconds = std::getenv("TQODR_FUZZ_SECONDS");
    return std::chrono::seconds(seconds ? std::atoi(seconds) : 2);
}

TEST_F(DispatchFuzz, AnswersEveryCallCleanlyAndLosesNothing)
{
    const auto end = std::chrono::steady_clock::now() + TimeToSpend();
    std::uint32_t seed = FirstSeed();
    do
    {
        SCOPED_TRACE("TQODR_FUZZ_SEED=" + std::to_string(seed));
        std::printf("seed %u\n", seed);
        std::fflush(stdout);
        CallWith(seed++);
    } while (!HasFailure() && std::chrono::steady_clock::now() < end);
}
}    // namespace
