#include "ui/JobWait.h"

#include "engine/ProgressThread.h"
#include "engine/ScanProgressView.h"
#include "tests/engine/ScanFixture.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>

namespace
{
struct WindowDestroyer
{
    void operator()(HWND window) const noexcept { ::DestroyWindow(window); }
};
using OwnedWindow = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;

// Shows a result as the dialog does: by a message to a window of the test's thread.
class WindowProgressView : public ScanProgressView
{
public:
    explicit WindowProgressView(HWND window) : window(window) {}

    std::atomic<int> rows{0};
    KernelHandle running{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::function<void()> whenFound = [] {};
    std::atomic<bool> finished{false};

    void AddResultRow(const std::wstring& folderName, const std::wstring&, LONG, LONG) override
    {
        ::SetEvent(running.get());
        whenFound();
        ::SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(folderName.c_str()));
        ++rows;
    }
    void StepProgress() override {}
    void FinishRun(const std::function<void()>& endJob) override
    {
        finished = true;
        endJob();
    }

private:
    HWND window;
};

class WaitingForAJob : public ScanFixture
{
protected:
    OwnedWindow window{
        ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr)};
    WindowProgressView view{window.get()};

    // A scan over many groups of two, of which the first has been found.
    void StartLongScan()
    {
        for (int i = 0; i < 200; ++i)
        {
            FakeFolder& folder = store.root.AddFolder(L"Folder " + std::to_wstring(i));
            folder.AddMessage({.subject = folder.name});
            folder.AddMessage({.subject = folder.name});
        }
        LoadTree();
        state.folderTree = &tree;
        ASSERT_TRUE(StartScan(state, view));
        ASSERT_EQ(::WaitForSingleObject(view.running.get(), 20000), WAIT_OBJECT_0);
    }
};

TEST_F(WaitingForAJob, ReturnsAtOnceWithoutOne)
{
    state.stopRequested = 0;

    StopJobAndWait(state);

    EXPECT_EQ(state.stopRequested, 0);
}

TEST_F(WaitingForAJob, LetsTheJobsMessagesThroughUntilItHasEndedEarly)
{
    StartLongScan();

    StopJobAndWait(state);

    EXPECT_EQ(state.workerThread, nullptr);
    EXPECT_TRUE(view.finished);
    EXPECT_GE(view.rows, 1);
    EXPECT_LT(view.rows, 200);
    EXPECT_EQ(state.stopRequested, 0);
}

TEST_F(WaitingForAJob, NeedsNoMessageToSeeItEnd)
{
    view.whenFound = [this]
    {
        while (!state.stopRequested)
            ::SwitchToThread();
    };
    StartLongScan();
    window.reset();

    StopJobAndWait(state);

    EXPECT_EQ(state.workerThread, nullptr);
}

TEST_F(WaitingForAJob, LeavesTheUsersInputInTheQueue)
{
    StartLongScan();
    ::PostMessageW(window.get(), WM_KEYDOWN, VK_RETURN, 1);

    StopJobAndWait(state);

    MSG kept{};
    EXPECT_TRUE(::PeekMessageW(&kept, window.get(), WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
}
}    // namespace
