#include "tests/console/EndToEnd.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST_F(EndToEnd, StopsDuringTheSearchWithoutAChangeHoweverOftenItIsAsked)
{
    // Far more rows than the pipe takes: the search waits in the middle for its reader.
    constexpr int groups = 600;
    std::vector<Mail> mails;
    for (int i = 0; i < groups; ++i)
        mails.insert(mails.end(), 2, {.subject = "Group " + std::to_string(i)});
    store.Add(mails);
    ChildProcess child({L"scan", L"--action", L"delete-permanently", L"--yes"}, ChildProcess::Streams::pipes,
                       1024);
    child.out.ReadUntil("Group 0 ");

    child.PressCtrlC();
    child.errors.ReadUntil("Stopping");
    child.PressCtrlC();
    const std::string rest = child.out.ReadAll();

    EXPECT_EQ(child.WaitForExitCode(), 3u);
    EXPECT_THAT(rest, HasSubstr("\n\nProcess aborted by user.\n\nTotal duplicates items: "));
    EXPECT_THAT(rest, Not(HasSubstr("Total duplicates items: 600\n")));
    EXPECT_EQ(store.ListMessages().size(), 2u * groups);
}

// The same program where somebody sits before it.
class OnATerminal : public EndToEnd
{
protected:
    static constexpr auto terminal = ChildProcess::Streams::terminal;
};

TEST_F(OnATerminal, DeletesForGoodWhenTheQuestionIsAnsweredWithYes)
{
    AddMinutes();
    ChildProcess child({L"scan", L"--action", L"delete-permanently"}, terminal);
    ASSERT_TRUE(child.WaitForScreen(L"Delete 2 messages for good? [y/N]"));

    child.Type(L"y\r");

    EXPECT_EQ(child.WaitForExitCode(), 0u);
    EXPECT_THAT(store.ListMessages(), ElementsAre("Inbox/Alone", "Inbox/Minutes"));
}

TEST_F(OnATerminal, StopsWithoutAChangeWhenTheQuestionIsAnsweredWithAnythingElse)
{
    AddMinutes();
    ChildProcess child({L"scan", L"--action", L"delete-permanently"}, terminal);
    ASSERT_TRUE(child.WaitForScreen(L"Delete 2 messages for good? [y/N]"));

    child.Type(L"\r");

    EXPECT_EQ(child.WaitForExitCode(), 3u);
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

TEST_F(OnATerminal, StopsWithoutAChangeWhenTheQuestionIsAnsweredWithCtrlC)
{
    AddMinutes();
    ChildProcess child({L"scan", L"--action", L"delete-permanently"}, terminal);
    ASSERT_TRUE(child.WaitForScreen(L"Delete 2 messages for good? [y/N]"));

    child.PressCtrlC();

    EXPECT_EQ(child.WaitForExitCode(), 3u);
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

TEST_F(OnATerminal, AsksNothingWhenThereIsNothingToDelete)
{
    store.Add({{.subject = "One"}, {.subject = "Two"}});

    const ChildProcess child({L"scan", L"--action", L"delete-permanently"}, terminal);

    EXPECT_EQ(child.WaitForExitCode(), 0u);
}
