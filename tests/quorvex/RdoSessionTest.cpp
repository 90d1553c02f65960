#include "tests/quorvex/SessionFixture.h"

#include <mapicode.h>

#include <future>
#include <thread>

namespace
{
// The lock under which libraries are loaded, unloaded and told of threads.
class LoaderLock
{
public:
    LoaderLock() { Find<LONG WINAPI(ULONG, ULONG*, ULONG_PTR*)>("LdrLockLoaderLock")(0, nullptr, &cookie); }
    LoaderLock(const LoaderLock&) = delete;
    LoaderLock& operator=(const LoaderLock&) = delete;
    ~LoaderLock() { Find<LONG WINAPI(ULONG, ULONG_PTR)>("LdrUnlockLoaderLock")(0, cookie); }

private:
    template <typename Function>
    static Function* Find(const char* name)
    {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
    }

    ULONG_PTR cookie = 0;
};

// How often MAPI is initialised, once that is what is wanted or half a minute has gone.
int WaitForInitialized(int wanted)
{
    const ULONGLONG end = GetTickCount64() + 30'000;
    while (fake::FakeMapiSession::initialized != wanted && GetTickCount64() < end)
        SwitchToThread();
    return fake::FakeMapiSession::initialized;
}

class RdoSession : public SessionFixture
{
};

TEST_F(RdoSession, LogsOnToTheDefaultProfileOfTheMachine)
{
    LogOn();

    const ULONG flags = fake::FakeMapiSession::logonFlags;
    EXPECT_EQ(flags, static_cast<ULONG>(MAPI_USE_DEFAULT | MAPI_EXTENDED | MAPI_ALLOW_OTHERS) | MAPI_UNICODE);
    EXPECT_EQ(fake::FakeMapiSession::logonProfile, L"");
}

TEST_F(RdoSession, LogsOnToAProfileByName)
{
    automation::Call(session.Get(), dispid::session::logOn,
                     {L"Work", 0L, automation::Missing(), automation::Missing(), 0L, automation::Missing()});

    EXPECT_EQ(fake::FakeMapiSession::logonProfile, L"Work");
    EXPECT_FALSE(fake::FakeMapiSession::logonFlags & MAPI_USE_DEFAULT);
}

TEST_F(RdoSession, SaysWhatToDoWhenNoProfileCanBeLoggedOnTo)
{
    fake::FakeMapiSession::logonResult = MAPI_E_LOGON_FAILED;

    const auto outcome = automation::Invoke(
        session.Get(), dispid::session::logOn, DISPATCH_METHOD,
        {L"", 0L, automation::Missing(), automation::Missing(), 0L, automation::Missing()});

    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, MAPI_E_LOGON_FAILED);
    EXPECT_NE(outcome.description.find(L"Set up a mail profile"), std::wstring::npos);
    EXPECT_NE(outcome.description.find(L"MAPI_E_LOGON_FAILED"), std::wstring::npos);
}

TEST_F(RdoSession, SaysWhatToDoWhenTheMailSystemDoesNotStart)
{
    fake::FakeMapiSession::initializeResult = MAPI_E_NOT_INITIALIZED;
    automation::Outcome outcome;

    // A thread of its own, for which MAPI has not been started yet.
    std::thread(
        [&] { outcome = automation::Invoke(session.Get(), dispid::session::stores, DISPATCH_PROPERTYGET); })
        .join();

    fake::FakeMapiSession::initializeResult = S_OK;
    EXPECT_EQ(outcome.code, MAPI_E_NOT_INITIALIZED);
    EXPECT_NE(outcome.description.find(L"mail program"), std::wstring::npos);
}

TEST_F(RdoSession, SaysWhatToDoWhenTheProfileHasNoDefaultStore)
{
    fake::FakeMapiSession::hasDefaultStore = false;
    LogOn();
    const auto stores = automation::ObjectOf(automation::Get(session.Get(), dispid::session::stores));

    const auto outcome =
        automation::Invoke(stores.Get(), dispid::storeCollection::defaultStore, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.code, MAPI_E_NOT_FOUND);
    EXPECT_NE(outcome.description.find(L"default message store"), std::wstring::npos);
}

TEST_F(RdoSession, HasNoStoresBeforeItIsLoggedOn)
{
    const auto outcome = automation::Invoke(session.Get(), dispid::session::stores, DISPATCH_PROPERTYGET);

    EXPECT_EQ(outcome.code, MAPI_E_NOT_INITIALIZED);
}

TEST_F(RdoSession, LogsOffWhenTheLastObjectGoes)
{
    LogOn();
    auto inboxFolder = Inbox();
    session.Reset();
    EXPECT_EQ(fake::FakeMapiSession::sessions, 1);

    inboxFolder.Reset();

    EXPECT_EQ(fake::FakeMapiSession::sessions, 0);
}

TEST_F(RdoSession, StartsMapiOnceForEachThreadAndEndsItWithTheThread)
{
    LogOn();
    const int before = fake::FakeMapiSession::initialized;
    int during = 0;

    std::thread(
        [&]
        {
            Inbox();
            Inbox();
            during = fake::FakeMapiSession::initialized;
        })
        .join();

    EXPECT_EQ(during, before + 1);
    EXPECT_EQ(fake::FakeMapiSession::initialized, before);
    EXPECT_EQ(fake::FakeMapiSession::initializeFlags, static_cast<ULONG>(MAPI_MULTITHREAD_NOTIFICATIONS));
}

// The system wants the loader's lock at another point of each thread's end.
TEST_F(RdoSession, EndsMapiForAThreadWithoutTheLoadersLock)
{
    LogOn();
    const int before = fake::FakeMapiSession::initialized;
    std::promise<void> used;
    std::promise<void> mayEnd;
    std::thread thread(
        [&, end = mayEnd.get_future()]
        {
            Inbox();
            used.set_value();
            end.wait();
        });
    used.get_future().wait();
    int after = 0;

    {
        const LoaderLock lock;
        mayEnd.set_value();
        after = WaitForInitialized(before);
    }
    thread.join();

    EXPECT_EQ(after, before);
}

TEST_F(RdoSession, OpensAMessageByItsIdWithTheAccessAskedFor)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});
    LogOn();
    const _variant_t storeId = automation::Get(DefaultStore().Get(), dispid::store::entryId);

    const auto item = automation::ObjectOf(automation::Call(session.Get(), dispid::session::getItemFromId,
                                                            {ToHex(message->entryId).c_str(), storeId, 16L}));

    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::subject)), L"Minutes");
    EXPECT_EQ(store->openFlags, std::vector<ULONG>{MAPI_BEST_ACCESS});
}

TEST_F(RdoSession, LooksInTheDefaultStoreWhenNoStoreIsNamed)
{
    const auto message = fake::AddStoredMessage(*inbox, {{PR_SUBJECT_W, L"Minutes"}});
    LogOn();

    const auto item = automation::ObjectOf(
        automation::Call(session.Get(), dispid::session::getItemFromId,
                         {ToHex(message->entryId).c_str(), automation::Missing(), automation::Missing()}));

    EXPECT_EQ(automation::TextOf(automation::Get(item.Get(), dispid::mailItem::subject)), L"Minutes");
}

TEST_F(RdoSession, DoesNotOpenAMessageThatIsNotThere)
{
    LogOn();

    const auto outcome = automation::Invoke(session.Get(), dispid::session::getItemFromId, DISPATCH_METHOD,
                                            {L"0000000099", L"", 16L});

    EXPECT_EQ(outcome.code, MAPI_E_NOT_FOUND);
}

TEST_F(RdoSession, DoesNotTakeAFolderForAMessage)
{
    LogOn();

    const auto outcome = automation::Invoke(session.Get(), dispid::session::getItemFromId, DISPATCH_METHOD,
                                            {ToHex(inbox->entryId).c_str(), L"", 16L});

    EXPECT_EQ(outcome.code, MAPI_E_INVALID_OBJECT);
}

TEST_F(RdoSession, ShowsTheStoresIdAndTheTopOfTheVisibleFolders)
{
    LogOn();

    const auto shown = automation::ObjectOf(automation::Get(DefaultStore().Get(), dispid::store::rootFolder));

    EXPECT_EQ(automation::TextOf(automation::Get(DefaultStore().Get(), dispid::store::entryId)),
              ToHex(store->entryId));
    EXPECT_EQ(automation::TextOf(automation::Get(shown.Get(), dispid::folder::name)), L"Top");
}

TEST_F(RdoSession, ShowsTheRootOfAStoreWithoutVisibleTop)
{
    store->properties.erase(PR_IPM_SUBTREE_ENTRYID);
    LogOn();

    const auto shown = automation::ObjectOf(automation::Get(DefaultStore().Get(), dispid::store::rootFolder));

    EXPECT_EQ(automation::TextOf(automation::Get(shown.Get(), dispid::folder::name)), L"Root");
}
}    // namespace
