// A store of 5,000 folders and 100,000 messages: the pages answer their user while they work.
#include "res/resource.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"
#include "tests/ui/WizardUser.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

namespace
{
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Folder 100 + i lies in folder 100 + i / 5: a tree of six levels and some. Each holds twenty messages, the
// last two with the subjects of the first two.
constexpr char manyFolders[] = R"(
BEGIN;
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000)
INSERT INTO folder (id, parent_id, name, container_class)
SELECT 100 + i, CASE WHEN i < 5 THEN 2 ELSE 100 + i / 5 END, 'Folder ' || i, 'IPF.Note' FROM n;
WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 99999)
INSERT INTO message (id, folder_id, message_class, subject, sender_name, sender_address_type, sender_address,
                     display_to, display_cc, display_bcc)
SELECT i + 1, 101 + i / 20, 'IPM.Note', 'Subject ' || (i - CASE WHEN i % 20 > 17 THEN 18 ELSE 0 END), 'Writer', 'SMTP',
       'writer@example.org', 'Reader', '', '' FROM n;
INSERT INTO message_text (message_id, headers, body) SELECT id, NULL, 'A short text.' FROM message;
COMMIT;
)";

class ResponsiveWizard : public testing::Test
{
protected:
    static const TemporaryStore& LargeStore()
    {
        static const TemporaryStore store;
        static const bool filled = (store.Run(manyFolders), true);
        static_cast<void>(filled);
        return store;
    }

    StoreVariable variable{std::filesystem::path(LargeStore().Path()).c_str()};

    // Presses Esc and takes the time until the question whether to stop is there.
    static milliseconds AskForTheEnd(WizardUser& user, Page page)
    {
        const Clock::time_point start = Clock::now();
        user.PressEscape(page);
        user.WaitFor(Page::stopQuestion);
        return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
    }
    static void Report(const char* what, Clock::time_point start)
    {
        std::printf("%s: %.1f s\n", what, std::chrono::duration<double>(Clock::now() - start).count());
    }
    // The large store takes its time: longer than a step of the user waits.
    static void WaitLong(WizardUser& user, const std::function<bool()>& condition, const std::string& what)
    {
        const Clock::time_point end = Clock::now() + std::chrono::minutes(5);
        bool done = false;
        while (!done && Clock::now() < end)
        {
            const Clock::time_point piece = Clock::now() + std::chrono::seconds(10);
            user.WaitUntil([&] { return (done = condition()) || Clock::now() > piece; }, what);
        }
        ASSERT_TRUE(done) << "waited in vain for " << what;
    }
};

TEST_F(ResponsiveWizard, AnswersWithinASecondWhileTheFoldersAreReadAndDuringARun)
{
    milliseconds earlyAnswer{};
    milliseconds lateAnswer{};
    milliseconds answerOfRun{};
    std::wstring told;

    UseWizard(
        [&](WizardUser& user)
        {
            user.WaitFor(Page::folders);
            const Clock::time_point start = Clock::now();
            earlyAnswer = AskForTheEnd(user, Page::folders);
            user.Answer(false);
            user.WaitFor(Page::folders);
            WaitLong(
                user, [&] { return user.CountFoldersShown() >= 5000; }, "all folders");
            lateAnswer = AskForTheEnd(user, Page::folders);
            user.Answer(false);
            user.WaitFor(Page::folders);
            WaitLong(
                user, [&] { return user.IsLoaded(); }, "the end of the loading");
            Report("reading 5,000 folders", start);

            user.Press(Page::folders, IDOK);
            user.ChooseFromList(IDC_ACTION, 4);
            user.Press(Page::settings, IDOK);
            user.WaitFor(Page::progress);
            WaitLong(
                user, [&] { return user.CountRows() > 0; }, "the first duplicate");
            answerOfRun = AskForTheEnd(user, Page::progress);
            user.Answer(true);
            user.WaitForOneOf({Page::notice});
            told = user.MessageText();
            user.FinishRun();
            user.PressEscape(Page::progress);
        });

    std::printf("answers after %lld, %lld and %lld ms\n", static_cast<long long>(earlyAnswer.count()),
                static_cast<long long>(lateAnswer.count()), static_cast<long long>(answerOfRun.count()));
    EXPECT_LT(earlyAnswer, std::chrono::seconds(1));
    EXPECT_LT(lateAnswer, std::chrono::seconds(1));
    EXPECT_LT(answerOfRun, std::chrono::seconds(1));
    EXPECT_TRUE(told.starts_with(L"Process aborted by user."));
}
}    // namespace
