#include "win/WinThread.h"

#include "win/KernelHandle.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>

namespace
{
constexpr DWORD deadline = 10000;    // milliseconds

KernelHandle CurrentThread()
{
    return KernelHandle(
        ::OpenThread(SYNCHRONIZE | THREAD_QUERY_LIMITED_INFORMATION, FALSE, ::GetCurrentThreadId()));
}

DWORD ExitCodeOf(const KernelHandle& thread)
{
    EXPECT_EQ(::WaitForSingleObject(thread.get(), deadline), WAIT_OBJECT_0);
    DWORD exitCode = 0;
    ::GetExitCodeThread(thread.get(), &exitCode);
    return exitCode;
}

// What the thread under test does and leaves behind; a fresh one for each test.
struct Record
{
    std::function<BOOL()> initialise = [] { return TRUE; };
    std::function<int(int)> end = [](int code) { return code; };
    KernelHandle begun{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle thread;
    DWORD id = 0;
    std::atomic<int> destroyed{0};
    std::atomic<int> heard{0};
};
Record* record;

class CTestThread : public CWinThread
{
public:
    static const CRuntimeClass& RuntimeClass()
    {
        static constexpr CRuntimeClass description{"CTestThread",
                                                   []() -> CObject* { return new CTestThread; }};
        return description;
    }
    ~CTestThread() override { ++record->destroyed; }

    const MessageMap& GetMessageMap() const override
    {
        static constexpr MessageHandler handlers[] = {OnMessage<&CTestThread::OnApp>(WM_APP)};
        static const MessageMap map{&CWinThread::GetMessageMap(), handlers};
        return map;
    }

protected:
    BOOL InitInstance() override
    {
        MSG none;
        ::PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE);    // makes the queue
        record->thread = CurrentThread();
        record->id = ::GetCurrentThreadId();
        ::SetEvent(record->begun.get());
        return record->initialise();
    }
    int ExitInstance() override { return record->end(CWinThread::ExitInstance()); }

private:
    LRESULT OnApp(WPARAM wParam, LPARAM)
    {
        record->heard += static_cast<int>(wParam);
        return 0;
    }
};

class WinThread : public testing::Test
{
protected:
    WinThread() { record = &own; }

    void WaitUntilBegun() { ASSERT_EQ(::WaitForSingleObject(own.begun.get(), deadline), WAIT_OBJECT_0); }

    Record own;
};

TEST_F(WinThread, HandlesItsMessagesUntilItIsToldToQuit)
{
    ASSERT_NE(BeginThread(CTestThread::RuntimeClass()), nullptr);
    WaitUntilBegun();
    ::PostThreadMessageW(own.id, WM_APP, 2, 0);
    ::PostThreadMessageW(own.id, WM_APP, 3, 0);

    ::PostThreadMessageW(own.id, WM_QUIT, 18, 0);

    EXPECT_EQ(ExitCodeOf(own.thread), 18u);
    EXPECT_EQ(own.heard, 5);
    EXPECT_EQ(own.destroyed, 1);
}

TEST_F(WinThread, DoesNothingUntilResumedWhenStartedSuspended)
{
    CWinThread* thread =
        BeginThread(CTestThread::RuntimeClass(), THREAD_PRIORITY_NORMAL, 0, CREATE_SUSPENDED | 1);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(::WaitForSingleObject(own.begun.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));

    EXPECT_EQ(thread->ResumeThread(), 1u);

    WaitUntilBegun();
    ::PostThreadMessageW(own.id, WM_QUIT, 0, 0);
    EXPECT_EQ(ExitCodeOf(own.thread), 0u);
}

TEST_F(WinThread, EndsAtOnceWhenItCannotBeInitialised)
{
    own.initialise = [] { return FALSE; };
    own.end = [](int) { return 4; };

    ASSERT_NE(BeginThread(CTestThread::RuntimeClass()), nullptr);

    WaitUntilBegun();
    EXPECT_EQ(ExitCodeOf(own.thread), 4u);
    EXPECT_EQ(own.destroyed, 1);
}

TEST_F(WinThread, LetsNoExceptionOutAndDeletesItselfAllTheSame)
{
    own.initialise = []() -> BOOL { throw std::runtime_error("no"); };

    ASSERT_NE(BeginThread(CTestThread::RuntimeClass()), nullptr);

    WaitUntilBegun();
    EXPECT_EQ(ExitCodeOf(own.thread), static_cast<DWORD>(-1));
    EXPECT_EQ(own.destroyed, 1);
}

TEST_F(WinThread, IsNotMadeOfAClassThatIsNoThread)
{
    static constexpr CRuntimeClass nothing{"Nothing", nullptr};
    static constexpr CRuntimeClass plain{"Plain", []() -> CObject* { return new CCmdTarget; }};

    EXPECT_EQ(BeginThread(nothing), nullptr);
    EXPECT_EQ(BeginThread(plain), nullptr);
}

TEST_F(WinThread, LeavesNoHandleBehind)
{
    DWORD before = 0;
    DWORD after = 0;
    const auto runOne = [this]
    {
        own.thread.reset();
        ::ResetEvent(own.begun.get());
        BeginThread(CTestThread::RuntimeClass());
        WaitUntilBegun();
        ::PostThreadMessageW(own.id, WM_QUIT, 0, 0);
        ExitCodeOf(own.thread);
    };
    runOne();
    ::GetProcessHandleCount(::GetCurrentProcess(), &before);

    for (int round = 0; round < 200; ++round)
        runOne();

    ::GetProcessHandleCount(::GetCurrentProcess(), &after);
    EXPECT_EQ(after, before);
    EXPECT_EQ(own.destroyed, 201);
}
}    // namespace
