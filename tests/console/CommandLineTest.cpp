#include "console/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
Command Parse(std::vector<std::wstring> words)
{
    return ParseCommandLine(words);
}

std::wstring RefusalOf(const std::vector<std::wstring>& words)
{
    try
    {
        ParseCommandLine(words);
    }
    catch (const UsageError& error)
    {
        return error.GetText();
    }
    return L"accepted";
}
}    // namespace

TEST(CommandLine, ReportsOnEveryFolderAndAnyTimeWhenScanStandsAlone)
{
    const Command command = Parse({L"scan"});

    EXPECT_EQ(command.task, Task::scan);
    EXPECT_TRUE(command.scan.folders.empty());
    EXPECT_EQ(command.scan.timeSpan, 10);
    EXPECT_FALSE(command.scan.action.has_value());
    EXPECT_FALSE(command.scan.quiet || command.scan.yes);
    EXPECT_FALSE(command.scan.senderName || command.scan.recipientName || command.scan.internetHeader ||
                 command.scan.attachments || command.scan.sendTime);
}

TEST(CommandLine, TakesOptionsBeforeBetweenAndAfterTheFolders)
{
    const Command command =
        Parse({L"--quiet", L"scan", L"Inbox", L"--log", L"r.txt", L"Sent Items", L"--yes"});

    EXPECT_EQ(command.scan.folders, (std::vector<std::wstring>{L"Inbox", L"Sent Items"}));
    EXPECT_EQ(command.scan.logFile, L"r.txt");
    EXPECT_TRUE(command.scan.quiet);
    EXPECT_TRUE(command.scan.yes);
}

TEST(CommandLine, TakesAValueAfterAnEqualsSign)
{
    const Command command = Parse({L"scan", L"--log=--odd=name.txt"});

    EXPECT_EQ(command.scan.logFile, L"--odd=name.txt");
}

TEST(CommandLine, TakesEveryWordAfterTwoDashesForAFolder)
{
    const Command command = Parse({L"scan", L"--", L"--help", L"-drafts"});

    EXPECT_EQ(command.task, Task::scan);
    EXPECT_EQ(command.scan.folders, (std::vector<std::wstring>{L"--help", L"-drafts"}));
}

TEST(CommandLine, KeepsEveryExcludedFolder)
{
    const Command command = Parse({L"scan", L"--exclude", L"Junk", L"--exclude", L"Deleted Items"});

    EXPECT_EQ(command.scan.excluded, (std::vector<std::wstring>{L"Junk", L"Deleted Items"}));
}

TEST(CommandLine, TakesACommaListOfCriteria)
{
    const Command command = Parse({L"scan", L"--criteria", L"sender-name,Attachments,send-time"});

    EXPECT_TRUE(command.scan.senderName);
    EXPECT_TRUE(command.scan.attachments);
    EXPECT_TRUE(command.scan.sendTime);
    EXPECT_FALSE(command.scan.recipientName);
    EXPECT_FALSE(command.scan.internetHeader);
}

TEST(CommandLine, HelpAndVersionWinOverWhateverElseStandsThere)
{
    EXPECT_EQ(Parse({L"--help"}).task, Task::help);
    EXPECT_EQ(Parse({L"scan", L"--bogus", L"--help"}).task, Task::help);
    EXPECT_EQ(Parse({L"/?"}).task, Task::help);
    EXPECT_EQ(Parse({L"--version"}).task, Task::version);
}

struct WordAndIndex
{
    const wchar_t* word;
    int index;
};

class SpanWords : public testing::TestWithParam<WordAndIndex>
{
};

TEST_P(SpanWords, NamesAnEntryOfTheListOfTimeSpans)
{
    EXPECT_EQ(Parse({L"scan", L"--span", GetParam().word}).scan.timeSpan, GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(EveryWord, SpanWords,
                         testing::Values(WordAndIndex{L"1d", 0}, WordAndIndex{L"2d", 1},
                                         WordAndIndex{L"5d", 2}, WordAndIndex{L"10d", 3},
                                         WordAndIndex{L"20d", 4}, WordAndIndex{L"30d", 5},
                                         WordAndIndex{L"50d", 6}, WordAndIndex{L"75d", 7},
                                         WordAndIndex{L"100d", 8}, WordAndIndex{L"1y", 9},
                                         WordAndIndex{L"anytime", 10}, WordAndIndex{L"1Y", 9}));

class ActionWords : public testing::TestWithParam<WordAndIndex>
{
};

TEST_P(ActionWords, NamesAnEntryOfTheListOfActions)
{
    std::vector<std::wstring> words{L"scan", L"--action", GetParam().word};
    if (GetParam().index == 2 || GetParam().index == 3)
        words.insert(words.end(), {L"--to", L"Inbox"});

    EXPECT_EQ(Parse(words).scan.action, static_cast<DuplicateAction>(GetParam().index));
}

INSTANTIATE_TEST_SUITE_P(EveryWord, ActionWords,
                         testing::Values(WordAndIndex{L"delete", 0}, WordAndIndex{L"expire", 1},
                                         WordAndIndex{L"copy", 2}, WordAndIndex{L"move", 3},
                                         WordAndIndex{L"flag", 4}, WordAndIndex{L"delete-permanently", 5}));

struct Refusal
{
    std::vector<std::wstring> words;
    const wchar_t* wrong;    // what the message says was wrong
    const wchar_t* right;    // what it says would be right
};

class WrongUsage : public testing::TestWithParam<Refusal>
{
};

TEST_P(WrongUsage, IsRefusedWithOneLineThatSaysWhatWasWrongAndWhatWouldBeRight)
{
    const std::wstring text = RefusalOf(GetParam().words);

    EXPECT_NE(text.find(GetParam().wrong), std::wstring::npos) << testing::PrintToString(text);
    EXPECT_NE(text.find(GetParam().right), std::wstring::npos) << testing::PrintToString(text);
    EXPECT_EQ(text.find(L'\n'), std::wstring::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongUsage,
    testing::Values(
        Refusal{{}, L"no command", L"tqodr scan [FOLDER...]"},
        Refusal{{L"--quiet"}, L"no command", L"tqodr scan [FOLDER...]"},
        Refusal{{L"scna"}, L"\"scna\" is no command", L"tqodr scan [FOLDER...]"},
        Refusal{{L"two\nlines"}, L"\"two lines\" is no command", L"tqodr scan [FOLDER...]"},
        Refusal{{L"scan", L"--bogus"}, L"\"--bogus\" is no option", L"--criteria"},
        Refusal{{L"scan", L"-x"}, L"\"-x\" is no option", L"--span"},
        Refusal{{L"scan", L"--span"}, L"--span lacks its value", L"--span SPAN"},
        Refusal{{L"scan", L"--span="}, L"--span lacks its value", L"--span SPAN"},
        Refusal{{L"scan", L"--log", L""}, L"--log lacks its value", L"--log FILE"},
        Refusal{{L"scan", L"--log", L"--quiet"}, L"--log lacks its value", L"--log FILE"},
        Refusal{
            {L"scan", L"--span", L"2w"}, L"\"2w\" is no time span", L"anytime, 1d, 2d, 5d, 10d, 20d, 30d"},
        Refusal{{L"scan", L"--criteria", L"size"}, L"\"size\" is no criterion", L"internet-header"},
        Refusal{{L"scan", L"--criteria", L"sender-name,,send-time"}, L"\"\" is no criterion", L"commas"},
        Refusal{{L"scan", L"--action", L"shred"}, L"\"shred\" is no action", L"delete-permanently"},
        Refusal{
            {L"scan", L"--action", L"flag", L"--action", L"flag"}, L"--action stands there twice", L"once"},
        Refusal{{L"scan", L"--quiet", L"--quiet"}, L"--quiet stands there twice", L"once"},
        Refusal{{L"scan", L"--quiet=yes"}, L"--quiet takes no value", L"write --quiet"},
        Refusal{{L"scan", L"--action", L"move"}, L"lacks the folder to move to", L"--to FOLDER"},
        Refusal{{L"scan", L"--action", L"copy"}, L"lacks the folder to copy to", L"--to FOLDER"},
        Refusal{{L"scan", L"--to", L"Inbox"}, L"--to names the folder of", L"leave --to out"},
        Refusal{{L"scan", L"--action", L"delete", L"--to", L"Inbox"},
                L"--to names the folder of",
                L"leave --to out"},
        Refusal{{L"folders", L"Inbox"}, L"takes no \"Inbox\"", L"write \"tqodr folders\" alone"},
        Refusal{{L"folders", L"--quiet"},
                L"--quiet belongs to \"tqodr scan\"",
                L"write \"tqodr folders\" alone"}));
