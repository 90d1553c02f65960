#include "tests/console/EndToEnd.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{
constexpr long long inbox = static_cast<long long>(StoreFolder::inbox);

long CountLines(const std::string& text)
{
    return static_cast<long>(std::ranges::count(text, '\n'));
}
}    // namespace

TEST_F(EndToEnd, ShowsTheFolderTreeWithCounts)
{
    store.AddFolder("Lists", inbox);
    AddMinutes();

    const RunResult run = RunToEnd({L"folders"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.out, HasSubstr("\n  Inbox(3)\n    Lists\n"));
    EXPECT_THAT(run.out, HasSubstr("\n  Sent Items(1)\n"));
    EXPECT_THAT(run.out, HasSubstr("\n  Calendar  [no mail folder]\n"));
}

TEST_F(EndToEnd, ReportsTheDuplicatesAndChangesNothing)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.out, testing::MatchesRegex("Folder Name +Subject +Duplicate Count\n"
                                               "Inbox +Minutes +1\n"
                                               "Sent Items +Minutes +1\n"
                                               "\n"
                                               "Total duplicates items: 2\n"
                                               "\n"
                                               "Selected Action: Report only\n"
                                               "\n"
                                               "Process completed\\.\n"));
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
    EXPECT_THAT(store.Query("SELECT DISTINCT flag_status FROM message"), ElementsAre(""));
}

TEST_F(EndToEnd, SaysThatNothingWasFoundInAStoreWithoutDuplicates)
{
    store.Add({{.subject = "One"}, {.subject = "Two"}});

    const RunResult run = RunToEnd({L"scan", L"--action", L"delete"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_EQ(run.out, "Total duplicates items: 0\n\n"
                       "Selected Action: Delete (move to Deleted Items folder)\n\n"
                       "Process completed.\n");
}

TEST_F(EndToEnd, FlagsEveryDuplicateAndLeavesTheFirstAlone)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"flag"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("Selected Action: Mark with the flag\n"));
    EXPECT_THAT(store.Query("SELECT id FROM message WHERE flag_status = 2 ORDER BY id"),
                ElementsAre("3", "4"));
    EXPECT_THAT(
        store.Query("SELECT message_id FROM message_property WHERE value = 'Duplicate Mail' ORDER BY 1"),
        ElementsAre("3", "4"));
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

TEST_F(EndToEnd, LetsEveryDuplicateExpireFiveMinutesAgo)
{
    constexpr const char* expiryTime = "1376320";    // 0x00150040
    constexpr const char* now = "((unixepoch() + 11644473600) * 10000000)";
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"expire"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("Selected Action: Mark as expired\n"));
    EXPECT_THAT(store.Query(std::string("SELECT message_id FROM message_property WHERE tag = ") + expiryTime +
                            " AND " + now + " - value BETWEEN 2990000000 AND 3600000000 ORDER BY 1"),
                ElementsAre("3", "4"));
}

TEST_F(EndToEnd, CopiesEveryDuplicateIntoTheFolderNamed)
{
    store.AddFolder("Copies", inbox);
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"copy", L"--to", L"inbox/copies"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("Selected Action: Copy to folder...\n"));
    EXPECT_THAT(store.ListMessages(), ElementsAre("Copies/Minutes", "Copies/Minutes", "Inbox/Alone",
                                                  "Inbox/Minutes", "Inbox/Minutes", "Sent Items/Minutes"));
}

TEST_F(EndToEnd, MovesEveryDuplicateSoThatASecondScanFindsNone)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"move", L"--to", L"Deleted Items"});
    const RunResult second = RunToEnd({L"scan", L"--exclude", L"Deleted Items"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("Selected Action: Move to folder...\n"));
    EXPECT_THAT(store.ListMessages(), ElementsAre("Deleted Items/Minutes", "Deleted Items/Minutes",
                                                  "Inbox/Alone", "Inbox/Minutes"));
    EXPECT_THAT(second.out, StartsWith("Total duplicates items: 0\n"));
}

TEST_F(EndToEnd, DeletesIntoDeletedItems)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"delete"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("Selected Action: Delete (move to Deleted Items folder)\n"));
    EXPECT_THAT(store.ListMessages(), ElementsAre("Deleted Items/Minutes", "Deleted Items/Minutes",
                                                  "Inbox/Alone", "Inbox/Minutes"));
}

TEST_F(EndToEnd, DeletesForGoodWithYes)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"delete-permanently", L"--yes"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, EndsWith("Selected Action: Delete permanently\n\nProcess completed.\n"));
    EXPECT_THAT(store.ListMessages(), ElementsAre("Inbox/Alone", "Inbox/Minutes"));
}

TEST_F(EndToEnd, RefusesToDeleteForGoodWhereNobodyCanBeAsked)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"delete-permanently"});

    EXPECT_EQ(run.exitCode, 1u);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.errors, HasSubstr("add --yes"));
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

TEST_F(EndToEnd, SearchesTheNamedFoldersAlone)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"Inbox"});

    EXPECT_THAT(run.out, HasSubstr("Total duplicates items: 1\n"));
    EXPECT_THAT(run.out, Not(HasSubstr("Sent Items")));
}

TEST_F(EndToEnd, LooksForDuplicatesWithinTheTimeSpanOnly)
{
    AddMinutes();

    EXPECT_THAT(RunToEnd({L"scan", L"--span", L"1y"}).out, HasSubstr("Total duplicates items: 0\n"));
    EXPECT_THAT(RunToEnd({L"scan", L"--span", L"anytime"}).out, HasSubstr("Total duplicates items: 2\n"));
}

TEST_F(EndToEnd, ShowsSubjectsOfEveryScriptInUtf8AndFindsFoldersByThem)
{
    const long long folder = store.AddFolder("\xC3\x89t\xC3\xA9/2014");
    store.Add({{.folder = folder,
                .subject = "Gr\xC3\xBC\xC3\x9F"
                           "e \xF0\x9F\x98\x80"},
               {.folder = folder,
                .subject = "Gr\xC3\xBC\xC3\x9F"
                           "e \xF0\x9F\x98\x80"}});

    const RunResult run = RunToEnd({L"scan", L"\u00E9t\u00E9/2014"});

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_THAT(run.out, HasSubstr("\xC3\x89t\xC3\xA9/2014"));
    EXPECT_THAT(run.out, HasSubstr("Gr\xC3\xBC\xC3\x9F"
                                   "e \xF0\x9F\x98\x80 "));
}

TEST_F(EndToEnd, PrintsTheClosingMessageAloneWhenQuiet)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--quiet"});

    EXPECT_EQ(run.out, "Total duplicates items: 2\n\nSelected Action: Report only\n\nProcess completed.\n");
    EXPECT_EQ(run.errors, "");
}

struct CriterionCase
{
    const wchar_t* criterion;
    Mail other;    // differs from the usual message in what the criterion compares
};

void PrintTo(const CriterionCase& tested, std::ostream* out)
{
    *out << testing::PrintToString(tested.criterion);
}

class EndToEndCriteria : public EndToEnd, public testing::WithParamInterface<CriterionCase>
{
};

TEST_P(EndToEndCriteria, TellMessagesApartThatAreOtherwiseTheSame)
{
    Mail usual{.subject = "S", .headers = "X-One: 1\r\n", .attachment = "one.txt"};
    Mail other = GetParam().other;
    other.subject = "S";
    store.Add({usual, other});

    EXPECT_THAT(RunToEnd({L"scan"}).out, HasSubstr("Total duplicates items: 1\n"));
    EXPECT_THAT(RunToEnd({L"scan", L"--criteria", GetParam().criterion}).out,
                HasSubstr("Total duplicates items: 0\n"));
}

INSTANTIATE_TEST_SUITE_P(Each, EndToEndCriteria,
                         testing::Values(CriterionCase{L"sender-name", {.senderName = "Anne"}},
                                         CriterionCase{L"recipient-name", {.recipient = "Carol"}},
                                         CriterionCase{L"internet-header", {.headers = "X-Two: 2\r\n"}},
                                         CriterionCase{L"attachments", {.attachment = "two.txt"}},
                                         CriterionCase{L"send-time",
                                                       {.submitTime = 133'000'000'060'000'000}}));

TEST_F(EndToEnd, SavesTheReportInPlaceOfAnOlderOne)
{
    AddMinutes();
    const std::filesystem::path log = store.GetPath().wstring() + L".txt";
    std::ofstream(log) << "an older and much longer report than the one that takes its place";

    const RunResult run = RunToEnd({L"scan", L"--log", log.wstring()});
    std::ifstream file(log, std::ios::binary);
    const std::string report{std::istreambuf_iterator<char>(file), {}};
    file.close();
    std::filesystem::remove(log);

    EXPECT_EQ(run.exitCode, 0u);
    EXPECT_EQ(report, "Talmore Quorvex Outlook Duplicate Remover\r\n"
                      "\r\n"
                      "Item Number: 1\r\n"
                      "Subject: Minutes\r\n"
                      "Folder Name: Inbox    Duplicate Count: 1\r\n"
                      "Folder Name: Sent Items    Duplicate Count: 1\r\n");
}

TEST_F(EndToEnd, StopsAtOnceWhenTheLogCannotBeMade)
{
    AddMinutes();

    const RunResult run = RunToEnd({L"scan", L"--action", L"delete", L"--log", L"no-such-folder/report.txt"});

    EXPECT_EQ(run.exitCode, 1u);
    EXPECT_EQ(CountLines(run.errors), 1);
    EXPECT_THAT(run.errors, HasSubstr("no-such-folder/report.txt"));
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

class EndToEndWrongUsage : public EndToEnd, public testing::WithParamInterface<std::vector<std::wstring>>
{
};

TEST_P(EndToEndWrongUsage, IsToldInOneLineAndEndsWithOne)
{
    AddMinutes();

    const RunResult run = RunToEnd(GetParam());

    EXPECT_EQ(run.exitCode, 1u);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.errors, StartsWith("tqodr: "));
    EXPECT_EQ(CountLines(run.errors), 1);
    EXPECT_EQ(store.ListMessages(), minutesUntouched);
}

INSTANTIATE_TEST_SUITE_P(
    Table, EndToEndWrongUsage,
    testing::Values(std::vector<std::wstring>{}, std::vector<std::wstring>{L"search"},
                    std::vector<std::wstring>{L"scan", L"--span", L"week"},
                    std::vector<std::wstring>{L"scan", L"--action", L"move"},
                    std::vector<std::wstring>{L"scan", L"--to", L"Inbox"},
                    std::vector<std::wstring>{L"scan", L"No such folder", L"--action", L"delete"},
                    std::vector<std::wstring>{L"scan", L"--exclude", L"No such folder", L"--action",
                                              L"delete"},
                    std::vector<std::wstring>{L"scan", L"--action", L"move", L"--to", L"No such folder"},
                    std::vector<std::wstring>{L"scan", L"--action", L"move", L"--to", L"Calendar"},
                    std::vector<std::wstring>{L"scan", L"Calendar"},
                    std::vector<std::wstring>{L"folders", L"--yes"}));

TEST_F(EndToEnd, TellsInOneLineThatThereIsNoStoreFile)
{
    UseStore(store.GetPath().wstring() + L".missing");

    for (const wchar_t* command : {L"folders", L"scan"})
    {
        const RunResult run = RunToEnd({command});

        EXPECT_EQ(run.exitCode, 2u);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.errors, StartsWith("tqodr: the mail store cannot be opened: "));
        EXPECT_EQ(CountLines(run.errors), 1);
    }
}

TEST_F(EndToEnd, TellsInOneLineThatTheFileIsNoStore)
{
    const std::filesystem::path other = store.GetPath().wstring() + L".other";
    std::ofstream(other)
        << "This is no mail store but a text, and long enough not to be taken for an empty file.";
    UseStore(other.wstring());

    const RunResult run = RunToEnd({L"scan"});
    std::filesystem::remove(other);

    EXPECT_EQ(run.exitCode, 2u);
    EXPECT_EQ(CountLines(run.errors), 1);
}

TEST_F(EndToEnd, ShowsHelpAndVersionWithoutAStore)
{
    UseStore(L"Z:\\no\\such\\store.db");

    const RunResult help = RunToEnd({L"--help"});
    const RunResult version = RunToEnd({L"--version"});

    EXPECT_EQ(help.exitCode, 0u);
    EXPECT_THAT(help.out, HasSubstr("--criteria"));
    EXPECT_THAT(help.out, HasSubstr("delete-permanently"));
    EXPECT_EQ(version.exitCode, 0u);
    EXPECT_THAT(version.out, StartsWith("tqodr " TQODR_VERSION));
    EXPECT_EQ(CountLines(version.out), 1);
}

TEST_F(EndToEnd, EndsWithFourWhenItsReaderHasGone)
{
    AddMinutes();
    ChildProcess child({L"scan"});
    child.out.CloseReadEnd();

    const std::string errors = child.errors.ReadAll();

    EXPECT_EQ(child.WaitForExitCode(), 4u);
    EXPECT_EQ(CountLines(errors), 1);
}
