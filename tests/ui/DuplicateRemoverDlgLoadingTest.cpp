#include "tests/ui/DuplicateRemoverDlgFixture.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

namespace
{
// While the tree is being loaded: the worker waits in the middle of it.
class LoadingPage : public MainPage
{
protected:
    std::atomic<bool> reached{false};
    KernelHandle passed{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};

    LoadingPage()
    {
        store.log.onCall = [this](const std::string& line)
        {
            if (!line.starts_with("Folder ") || reached.exchange(true))
                return;
            ::WaitForSingleObject(passed.get(), 20000);
        };
    }
    INT_PTR UseWhileLoading(const std::function<void(ModalDriver& user, HWND page)>& script)
    {
        return Use(
            [&](ModalDriver& user)
            {
                const HWND page = WaitForPage(user);
                user.WaitUntil([this] { return reached.load(); }, "the loading to come to the halt");
                script(user, page);
            });
    }
    void LetPass() { ::SetEvent(passed.get()); }

    // Answers the question that stands in front of the page; its text.
    static std::wstring Answer(ModalDriver& user, int answer)
    {
        constexpr int textOfAMessageBox = 0xFFFF;
        const HWND box = user.WaitForDialog(productTitle, IDYES);
        std::wstring text = TextOf(::GetDlgItem(box, textOfAMessageBox));
        user.Click(box, answer);
        user.WaitForEnd(box);
        return text;
    }
};

TEST_F(LoadingPage, KeepsItsButtonsDisabledAndItsNoticeShown)
{
    std::vector<bool> enabled;
    bool noticeShown = false;

    UseWhileLoading(
        [&](ModalDriver& user, HWND page)
        {
            for (const int id : {IDOK, IDC_ABOUT, IDC_HELP_TOPIC})
                enabled.push_back(IsEnabled(page, id));
            noticeShown = IsShown(page, IDC_PLEASE_WAIT);
            LetPass();
            WaitUntilLoaded(user, page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(enabled, (std::vector<bool>{false, false, false}));
    EXPECT_TRUE(noticeShown);
}

TEST_F(LoadingPage, AsksWhetherToStopWhenEscIsPressedAndStaysOpenAfterYes)
{
    std::wstring question;
    std::vector<std::wstring> items;

    UseWhileLoading(
        [&](ModalDriver& user, HWND page)
        {
            user.PressKey(page, VK_ESCAPE);
            question = Answer(user, IDYES);
            LetPass();
            WaitUntilLoaded(user, page);
            items = ItemsOf(page);
            user.PressKey(page, VK_ESCAPE);
        });

    EXPECT_EQ(question, L"Do you want to stop process?");
    EXPECT_EQ(items, std::vector<std::wstring>{L"Mailbox:2"}) << "the loading went on";
}

TEST_F(LoadingPage, GoesOnLoadingAfterNo)
{
    std::vector<std::wstring> items;

    UseWhileLoading(
        [&](ModalDriver& user, HWND page)
        {
            ::PostMessageW(page, WM_CLOSE, 0, 0);
            Answer(user, IDNO);
            LetPass();
            WaitUntilLoaded(user, page);
            items = ItemsOf(page);
            ::PostMessageW(page, WM_CLOSE, 0, 0);
        });

    EXPECT_EQ(items.size(), 4u);
}

TEST_F(LoadingPage, WaitsForTheLoadingWhenItsWindowIsDestroyedUnderIt)
{
    const INT_PTR result = UseWhileLoading(
        [&](ModalDriver&, HWND page)
        {
            ModalDriver::RunOnThreadOf(page, [page] { ::DestroyWindow(page); });
            LetPass();
        });

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(store.log.liveObjects, 0);
}

TEST_F(MainPage, StaysOpenWithoutASession)
{
    serves = false;
    std::vector<std::wstring> items{L"?"};

    Use(
        [&](ModalDriver& user)
        {
            // The loading asks the page to close, and that asks the user.
            const HWND page = WaitForPage(user);
            user.Click(user.WaitForDialog(productTitle, IDYES), IDNO);
            WaitUntilLoaded(user, page);
            items = ItemsOf(page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(items, std::vector<std::wstring>());
}

TEST_F(MainPage, LetsGoOfASessionThatDoesNotLogOn)
{
    store.log.failAt = 1;
    int liveObjects = -1;

    Use(
        [&](ModalDriver& user)
        {
            const HWND page = WaitForPage(user);
            const HWND question = user.WaitForDialog(productTitle, IDYES);
            liveObjects = store.log.liveObjects;
            user.Click(question, IDNO);
            WaitUntilLoaded(user, page);
            user.Click(page, IDCANCEL);
        });

    EXPECT_EQ(liveObjects, 0);
}
}    // namespace
