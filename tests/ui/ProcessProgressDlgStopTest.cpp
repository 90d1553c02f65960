#include "tests/ui/ProcessProgressDlgFixture.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

using testing::IsEmpty;

namespace
{
constexpr int many = 24;

class StoppingARun : public ProgressPage
{
protected:
    using Clock = std::chrono::steady_clock;

    // Many folders with a group of two messages each.
    void AddManyFolders()
    {
        for (int i = 0; i < many; ++i)
            AddFolder(L"Folder " + std::to_wstring(i), L"Subject " + std::to_wstring(i), 1);
    }
    int CountChangedMessages() const
    {
        int changed = 0;
        for (const FakeFolder& folder : store.root.folders)
            for (const auto& message : folder.messages)
                changed += message->saves;
        return changed;
    }

    // Uses the page of a run that is held back, until the script opens the gate.
    INT_PTR UseHeldBack(const std::function<void(ModalDriver& user, HWND page, const JobGate& gate)>& script)
    {
        AddManyFolders();
        JobGate gate(store);
        return Use(
            [&](ModalDriver& user, HWND page)
            {
                user.WaitUntil([&] { return gate.IsReached(); }, "the job");
                script(user, page, gate);
                gate.Open();
            });
    }

    // Asks to close by `ask` during a run, answers No, and returns what the question was.
    std::wstring QuestionOn(const UserOfPage& ask)
    {
        std::wstring question;
        UseHeldBack(
            [&](ModalDriver& user, HWND page, const JobGate& gate)
            {
                ask(user, page);
                const HWND box = WaitForQuestion(user);
                question = TextOf(::GetDlgItem(box, 0xFFFF));
                EXPECT_EQ(::GetWindow(box, GW_OWNER), page);
                EXPECT_NE(::GetDlgItem(box, IDNO), nullptr);
                EXPECT_EQ(::GetDlgItem(box, IDCANCEL), nullptr);
                user.Click(box, IDNO);
                gate.Open();
                WaitForTheEnd(user, page);
                user.PostClick(page, IDCANCEL);
            });
        return question;
    }
};

const wchar_t question[] = L"Do you want to stop process?";

TEST_F(StoppingARun, IsAskedForByTheCloseButton)
{
    EXPECT_EQ(QuestionOn([](ModalDriver& user, HWND page) { user.PostClick(page, IDCANCEL); }), question);
}

TEST_F(StoppingARun, IsAskedForByTheCloseBox)
{
    EXPECT_EQ(QuestionOn([](ModalDriver&, HWND page) { ::PostMessageW(page, WM_SYSCOMMAND, SC_CLOSE, 0); }),
              question);
}

TEST_F(StoppingARun, IsAskedForByTheEscapeKey)
{
    EXPECT_EQ(QuestionOn([](ModalDriver& user, HWND page) { user.PressKey(page, VK_ESCAPE); }), question);
}

TEST_F(StoppingARun, IsAskedWithTheQuestionIcon)
{
    HICON icon = nullptr;
    UseHeldBack(
        [&](ModalDriver& user, HWND page, const JobGate& gate)
        {
            user.PostClick(page, IDCANCEL);
            const HWND box = WaitForQuestion(user);
            for (HWND child = nullptr; (child = ::FindWindowExW(box, child, L"Static", nullptr)) && !icon;)
                icon = reinterpret_cast<HICON>(::SendMessageW(child, STM_GETICON, 0, 0));
            user.Click(box, IDNO);
            gate.Open();
            WaitForTheEnd(user, page);
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_EQ(icon, ::LoadIconW(nullptr, IDI_QUESTION));
}

TEST_F(StoppingARun, GoesOnWhenTheAnswerIsNo)
{
    UseHeldBack(
        [&](ModalDriver& user, HWND page, const JobGate& gate)
        {
            user.PostClick(page, IDCANCEL);
            user.Click(WaitForQuestion(user), IDNO);
            gate.Open();
            EXPECT_EQ(WaitForTheEnd(user, page), L"Total duplicates items: " + std::to_wstring(many) +
                                                     L"\n\nSelected Action: Mark with the flag\n\n"
                                                     L"Process completed.");
            EXPECT_EQ(RowsOf(page).size(), static_cast<std::size_t>(many));
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_EQ(CountChangedMessages(), many);
}

TEST_F(StoppingARun, EndsItEarlyAndStaysOpenWhenTheAnswerIsYes)
{
    UseHeldBack(
        [&](ModalDriver& user, HWND page, const JobGate& gate)
        {
            user.PostClick(page, IDCANCEL);
            user.Click(WaitForQuestion(user), IDYES);
            user.WaitUntil([&] { return state.stopRequested == 1; }, "the request");
            gate.Open();
            EXPECT_EQ(WaitForTheEnd(user, page), L"Process aborted by user.\n\nTotal duplicates items: 0");
            EXPECT_TRUE(::IsWindowVisible(page));
            EXPECT_TRUE(::IsWindowEnabled(page));
            EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(page, IDC_SAVE_LOG)));
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_EQ(CountChangedMessages(), 0);
    EXPECT_EQ(state.stopRequested, 0);
    EXPECT_TRUE(state.folders.empty());
}

TEST_F(StoppingARun, TellsHowManyWereFoundUntilThen)
{
    AddManyFolders();
    std::wstring told;
    std::size_t rows = 0;

    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return !RowsOf(page).empty(); }, "a first row");
            user.PostClick(page, IDCANCEL);
            user.Click(WaitForQuestion(user), IDYES);
            told = WaitForTheEnd(user, page);
            rows = RowsOf(page).size();
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_LT(rows, static_cast<std::size_t>(many));
    EXPECT_EQ(told, L"Process aborted by user.\n\nTotal duplicates items: " + std::to_wstring(rows));
    EXPECT_EQ(CountChangedMessages(), 0);
}

TEST_F(StoppingARun, IsAskedAboutPromptlyWhileTheRunAddsRows)
{
    AddManyFolders();
    Clock::duration waited{};
    std::size_t before = 0;
    std::size_t meanwhile = 0;

    Use(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return !RowsOf(page).empty(); }, "a first row");
            const auto asked = Clock::now();
            user.PostClick(page, IDCANCEL);
            const HWND box = WaitForQuestion(user);
            waited = Clock::now() - asked;
            EXPECT_NE(state.workerThread, nullptr);
            before = RowsOf(page).size();
            user.WaitUntil([&] { return RowsOf(page).size() > before; }, "a row under the question");
            meanwhile = RowsOf(page).size();
            user.Click(box, IDYES);
            WaitForTheEnd(user, page);
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_LT(waited, std::chrono::seconds(1));
    EXPECT_GT(meanwhile, before);
}

TEST_F(StoppingARun, ChangesNothingWhenTheRunHasEndedUnderTheQuestion)
{
    INT_PTR result = UseHeldBack(
        [&](ModalDriver& user, HWND page, const JobGate& gate)
        {
            user.PostClick(page, IDCANCEL);
            const HWND box = WaitForQuestion(user);
            gate.Open();
            WaitForTheEnd(user, page);
            user.Click(box, IDYES);
            user.WaitForEnd(box);
            EXPECT_EQ(state.stopRequested, 0);
            EXPECT_TRUE(::IsWindowEnabled(page));
            EXPECT_EQ(RowsOf(page).size(), static_cast<std::size_t>(many));
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(StoppingARun, MayBeAnsweredWhileTheEndIsTold)
{
    const INT_PTR result = UseHeldBack(
        [&](ModalDriver& user, HWND page, const JobGate& gate)
        {
            user.PostClick(page, IDCANCEL);
            const HWND box = WaitForQuestion(user);
            gate.Open();
            const HWND message = WaitForEndMessage(user);
            user.Click(box, IDYES);
            user.WaitForEnd(box);
            Dismiss(user, message, page);
            EXPECT_EQ(state.workerThread, nullptr);
            EXPECT_EQ(state.stopRequested, 0);
            user.PostClick(page, IDCANCEL);
        });

    EXPECT_EQ(result, IDCANCEL);
}

TEST_F(StoppingARun, IsNotAskedAboutWhenNoneIsOn)
{
    const auto closeBy = [this](const UserOfPage& close)
    {
        return Use(
            [&](ModalDriver& user, HWND page)
            {
                WaitForTheEnd(user, page);
                close(user, page);
                user.WaitForEnd(page);
            });
    };

    EXPECT_EQ(closeBy([](ModalDriver& user, HWND page) { user.PostClick(page, IDCANCEL); }), IDCANCEL);
    EXPECT_EQ(closeBy([](ModalDriver& user, HWND page) { user.PressKey(page, VK_ESCAPE); }), IDCANCEL);
    EXPECT_EQ(closeBy([](ModalDriver&, HWND page) { ::PostMessageW(page, WM_SYSCOMMAND, SC_CLOSE, 0); }),
              IDCANCEL);
}

// The page whose window goes under a run, as when the host destroys the window that owns it.
class DestroyingThePage : public StoppingARun
{
protected:
    // Returns when the page's object has gone as well; the script goes on until then.
    void UseAndLose(const UserOfPage& script)
    {
        LoadTree();
        ModalDriver user([&](ModalDriver& self) { script(self, self.WaitForDialog(title, IDC_SAVE_LOG)); });
        EXPECT_EQ(CProcessProgressDlg(state).DoModal(), IDCANCEL);
        EXPECT_EQ(state.workerThread, nullptr);
        user.Join();
    }
    static void Destroy(HWND window)
    {
        ModalDriver::RunOnThreadOf(window, [window] { ::DestroyWindow(window); });
    }
};

TEST_F(DestroyingThePage, StopsTheRunAndWaitsForItsEnd)
{
    AddManyFolders();
    JobGate gate(store);

    UseAndLose(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return gate.IsReached(); }, "the job");
            Destroy(page);
            user.WaitUntil([&] { return state.stopRequested == 1; }, "the request to stop");
            gate.Open();
        });

    EXPECT_EQ(state.stopRequested, 0);
    EXPECT_EQ(CountChangedMessages(), 0);
    EXPECT_THAT(ShownDialogs(), IsEmpty());
}

TEST_F(DestroyingThePage, SurvivesARunThatIsAddingRows)
{
    AddManyFolders();

    UseAndLose(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return !RowsOf(page).empty(); }, "a first row");
            Destroy(page);
        });

    EXPECT_THAT(ShownDialogs(), IsEmpty());
}

TEST_F(DestroyingThePage, TakesTheMessageAtTheEndAlong)
{
    AddFolder(L"Inbox", L"Report", 1);

    UseAndLose(
        [&](ModalDriver& user, HWND page)
        {
            WaitForEndMessage(user);
            Destroy(page);
        });

    EXPECT_THAT(ShownDialogs(), IsEmpty());
}

TEST_F(DestroyingThePage, TakesTheQuestionAlong)
{
    AddManyFolders();
    JobGate gate(store);

    UseAndLose(
        [&](ModalDriver& user, HWND page)
        {
            user.WaitUntil([&] { return gate.IsReached(); }, "the job");
            user.PostClick(page, IDCANCEL);
            WaitForQuestion(user);
            Destroy(page);
            gate.Open();
        });

    EXPECT_THAT(ShownDialogs(), IsEmpty());
}
}    // namespace
