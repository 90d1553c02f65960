// Each of the six actions, from a click on the add-in's button in the delivered host to what the host's list
// of messages shows when the wizard has gone: all of it in the delivered programs and libraries.
#include "tests/console/MailFile.h"
#include "tests/endtoend/HostProgram.h"
#include "tests/endtoend/RemoteWindows.h"
#include "tests/endtoend/WizardSteps.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

void PrintTo(const HostRow& row, std::ostream* stream)
{
    *stream << testing::PrintToString(row.sender + L" | " + row.subject + L" | " + row.marks) << " picture "
            << row.image;
}

namespace
{
using Rows = std::vector<HostRow>;
using Mailbox = std::map<std::wstring, Rows>;    // what is shown of each folder that has messages

constexpr wchar_t inbox[] = L"Inbox";
constexpr wchar_t sentItems[] = L"Sent Items";
constexpr wchar_t deletedItems[] = L"Deleted Items";
constexpr wchar_t archive[] = L"Archive";

// The small pictures of the host's list.
constexpr int plainPicture = 0;
constexpr int flaggedPicture = 2;
constexpr int expiredPicture = 4;

HostRow Minutes(const std::wstring& marks = {}, int picture = plainPicture)
{
    return {L"Ann", L"Minutes", marks, picture};
}
HostRow Invoice(const std::wstring& marks = {}, int picture = plainPicture)
{
    return {L"Zoe", L"Invoice", marks, picture};
}
const HostRow lunch{L"Ann", L"Lunch?", L"", plainPicture};

struct Case
{
    const char* name;
    WizardChoices choices;
    Mailbox expected;
};

void PrintTo(const Case& one, std::ostream* stream)
{
    *stream << one.name;
}

// Of the minutes the first of three is kept, of the invoices the one in the Inbox; lists show the newest
// first.
std::vector<Case> Cases()
{
    const Mailbox gone{{inbox, {lunch, Invoice(), Minutes()}}};
    const auto goneTo = [&](const wchar_t* folder)
    {
        Mailbox result = gone;
        result[folder] = {Invoice(), Minutes(), Minutes()};
        return result;
    };
    const auto marked = [](const wchar_t* marks, int picture) -> Mailbox
    {
        return {{inbox, {lunch, Invoice(), Minutes(marks, picture), Minutes(marks, picture), Minutes()}},
                {sentItems, {Invoice(marks, picture)}}};
    };
    Mailbox copied = marked(L"", plainPicture);
    copied[archive] = {Invoice(), Minutes(), Minutes()};
    return {{"flag", {L"flag"}, marked(L"Flagged", flaggedPicture)},
            {"expire", {L"expire"}, marked(L"Expired", expiredPicture)},
            {"copy", {L"copy", archive}, copied},
            {"move", {L"move", archive}, goneTo(archive)},
            {"delete", {L"delete"}, goneTo(deletedItems)},
            {"deletePermanently", {L"delete-permanently"}, gone}};
}

Mailbox ReadMailbox(const HostProgram& host)
{
    Mailbox shown;
    for (const std::wstring& folder : host.ListFolders())
    {
        host.SelectFolder(folder);
        if (Rows rows = host.ReadRows(); !rows.empty())
            shown[folder] = std::move(rows);
    }
    return shown;
}

class WizardAction : public testing::TestWithParam<Case>
{
protected:
    static void SetUpTestSuite() { RegisterAddIn(Dist()); }

    WizardAction()
    {
        ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", file.GetPath().c_str());
        file.AddFolder("Archive");
        constexpr auto sent = static_cast<long long>(StoreFolder::sentItems);
        file.Add({{.subject = "Minutes", .deliveryTime = 133'000'000'000'000'000},
                  {.subject = "Minutes", .deliveryTime = 133'010'000'000'000'000},
                  {.subject = "Minutes", .deliveryTime = 133'020'000'000'000'000},
                  {.subject = "Invoice",
                   .senderAddress = "zoe@example.org",
                   .senderName = "Zoe",
                   .deliveryTime = 133'030'000'000'000'000},
                  {.subject = "Lunch?", .deliveryTime = 133'040'000'000'000'000},
                  {.folder = sent,
                   .subject = "Invoice",
                   .senderAddress = "zoe@example.org",
                   .senderName = "Zoe",
                   .deliveryTime = 133'050'000'000'000'000}});
    }
    ~WizardAction() override { ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", nullptr); }

    static std::wstring Dist()
    {
        wchar_t value[1024] = L"";
        ::GetEnvironmentVariableW(L"TQODR_DIST", value, ARRAYSIZE(value));
        return WindowsPath(value);
    }

    MailFile file;
};

TEST_P(WizardAction, IsSeenInTheHostsListOfMessages)
{
    HostProgram host(Dist());
    host.SelectFolder(inbox);
    ASSERT_EQ(host.ReadRows(), (Rows{lunch, Invoice(), Minutes(), Minutes(), Minutes()}));

    host.PressToolBarButton(L"Talmore Duplicate Remover");
    WalkWizard(GetParam().choices, [](HWND, const char*) {});

    // The list that was there follows by itself; the other folders are looked into.
    const Rows& expected = GetParam().expected.at(inbox);
    WaitUntil([&] { return host.ReadRows() == expected; }, "the refreshed list");
    EXPECT_EQ(ReadMailbox(host), GetParam().expected);
    host.Close();
}

INSTANTIATE_TEST_SUITE_P(Six, WizardAction, testing::ValuesIn(Cases()),
                         [](const auto& one) { return std::string(one.param.name); });
}    // namespace
