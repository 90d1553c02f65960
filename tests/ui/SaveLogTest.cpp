#include "ui/SaveLog.h"

#include "tests/ui/ScratchFolder.h"
#include "win/KernelHandle.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{
struct ShownMessage
{
    std::wstring text;
    UINT type = 0;

    bool operator==(const ShownMessage&) const = default;
};

// A user who names these files, one after the other, then gives up; and who answers every question alike.
class ScriptedUser : public SaveLogPrompts
{
public:
    std::deque<std::wstring> paths;
    int answer = IDOK;
    std::function<void()> whenAsked = [] {};
    std::vector<ShownMessage> messages;
    int timesAsked = 0;

    std::optional<std::wstring> AskForPath() override
    {
        ++timesAsked;
        if (paths.empty())
            return std::nullopt;
        std::wstring path = paths.front();
        paths.pop_front();
        return path;
    }
    int ShowMessage(const std::wstring& text, UINT type) override
    {
        messages.push_back({text, type});
        if (type & MB_OKCANCEL)
            whenAsked();
        return answer;
    }
};

class SavingTheLog : public testing::Test
{
protected:
    ScratchFolder folder;
    ScriptedUser user;
    std::vector<LogRow> rows{{L"Inbox", L"Meeting", L"2"}};

    void Save(const std::vector<std::wstring>& names)
    {
        for (const std::wstring& name : names)
            user.paths.push_back(folder.PathOf(name));
        SaveLog(StringTable(::GetModuleHandleW(nullptr)), rows, user);
    }
    ShownMessage SavedAt(const std::wstring& name) const
    {
        return {L"Log Information saved at: " + folder.PathOf(name) + L".", MB_OK | MB_ICONINFORMATION};
    }
    static ShownMessage QuestionAbout(const std::wstring& name)
    {
        return {L"File " + name + L" already exists. Do you want to replace existing file?",
                MB_OKCANCEL | MB_ICONQUESTION};
    }
    const ShownMessage notCreated{L"Error creating file. Choose another file name.", MB_OK | MB_ICONERROR};
    const ShownMessage anotherName{L"Choose another file name.", MB_OK | MB_ICONERROR};
};

TEST_F(SavingTheLog, WritesTheReportIntoANewFileAndSaysWhere)
{
    Save({L"report.txt"});

    EXPECT_EQ(folder.Read(L"report.txt"), "Talmore Quorvex Outlook Duplicate Remover\r\n"
                                          "\r\nItem Number: 1\r\n"
                                          "Subject: Meeting\r\n"
                                          "Folder Name: Inbox    Duplicate Count: 2\r\n");
    EXPECT_THAT(user.messages, ElementsAre(SavedAt(L"report.txt")));
    EXPECT_EQ(user.timesAsked, 1);
}

TEST_F(SavingTheLog, HasClosedTheFileWhenItSaysSo)
{
    Save({L"report.txt"});

    const HANDLE again = ::CreateFileW(folder.PathOf(L"report.txt").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(again, INVALID_HANDLE_VALUE);
    const KernelHandle owned(again);
}

TEST_F(SavingTheLog, AddsTheExtensionToANameWithoutOne)
{
    Save({L"report"});

    EXPECT_TRUE(folder.Has(L"report.txt"));
    EXPECT_FALSE(folder.Has(L"report"));
    EXPECT_THAT(user.messages, ElementsAre(SavedAt(L"report.txt")));
}

TEST_F(SavingTheLog, AddsTheExtensionToANameWithAnother)
{
    Save({L"report.log"});

    EXPECT_TRUE(folder.Has(L"report.log.txt"));
}

TEST_F(SavingTheLog, KeepsTheExtensionInAnyCase)
{
    Save({L"REPORT.TXT"});

    EXPECT_THAT(user.messages, ElementsAre(SavedAt(L"REPORT.TXT")));
    EXPECT_FALSE(folder.Has(L"REPORT.TXT.txt"));
}

TEST_F(SavingTheLog, TakesOnlyTheLettersAToZForTheSameInBothCases)
{
    // A full-width T and the letters of other alphabets that look like it.
    for (const wchar_t* name : {L"a.\xFF34XT", L"b.\x03A4xt", L"c.tx\xFF54"})
        Save({name});

    EXPECT_TRUE(folder.Has(L"a.\xFF34XT.txt"));
    EXPECT_TRUE(folder.Has(L"b.\x03A4xt.txt"));
    EXPECT_TRUE(folder.Has(L"c.tx\xFF54.txt"));
}

TEST_F(SavingTheLog, TakesANameOfTheExtensionAloneAsItIs)
{
    Save({L".txt"});

    EXPECT_TRUE(folder.Has(L".txt"));
}

// Names as they are, below the current folder.
class SavingUnderAShortName : public SavingTheLog
{
protected:
    SavingUnderAShortName() { std::filesystem::current_path(folder.Path()); }
    ~SavingUnderAShortName() override { std::filesystem::current_path(before); }

    std::filesystem::path before = std::filesystem::current_path();
};

TEST_F(SavingUnderAShortName, AddsTheExtensionToANameShorterThanIt)
{
    for (const wchar_t* name : {L"a", L"txt", L".tx"})
    {
        user.paths = {name};
        SaveLog(StringTable(::GetModuleHandleW(nullptr)), rows, user);
    }

    EXPECT_TRUE(folder.Has(L"a.txt"));
    EXPECT_TRUE(folder.Has(L"txt.txt"));
    EXPECT_TRUE(folder.Has(L".tx.txt"));
}

TEST_F(SavingUnderAShortName, NamesAFileWithoutAFolderAsItIs)
{
    folder.Write(L"a.txt", "old");
    user.paths = {L"a.txt"};

    SaveLog(StringTable(::GetModuleHandleW(nullptr)), rows, user);

    EXPECT_EQ(user.messages.front(), QuestionAbout(L"a.txt"));
}

TEST_F(SavingTheLog, DoesNothingWhenTheUserGivesUp)
{
    Save({});

    EXPECT_EQ(user.timesAsked, 1);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(SavingTheLog, AsksForAnotherFileWhileNoneCanBeCreated)
{
    Save({L"missing\\report.txt", L"report.txt"});

    EXPECT_THAT(user.messages, ElementsAre(notCreated, SavedAt(L"report.txt")));
    EXPECT_THAT(folder.Read(L"report.txt"), StartsWith("Talmore"));
}

TEST_F(SavingTheLog, GivesUpWhenTheUserDoesAfterAFileThatCannotBeCreated)
{
    Save({L"missing\\report.txt"});

    EXPECT_THAT(user.messages, ElementsAre(notCreated));
    EXPECT_EQ(user.timesAsked, 2);
}

TEST_F(SavingTheLog, CannotWriteAFileThatAnotherProgramHolds)
{
    folder.Write(L"report.txt", "old");
    const KernelHandle other(::CreateFileW(folder.PathOf(L"report.txt").c_str(), GENERIC_READ,
                                           FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));

    Save({L"report.txt"});

    EXPECT_THAT(user.messages, ElementsAre(notCreated));
    EXPECT_EQ(folder.Read(L"report.txt"), "old");
}

TEST_F(SavingTheLog, ReplacesAFileThatExistsWhenTheUserAgrees)
{
    folder.Write(L"report.txt", std::string(5000, 'x'));

    Save({L"report.txt"});

    EXPECT_THAT(user.messages, ElementsAre(QuestionAbout(L"report.txt"), SavedAt(L"report.txt")));
    EXPECT_THAT(folder.Read(L"report.txt"), StartsWith("Talmore"));
    EXPECT_THAT(folder.Read(L"report.txt"), testing::EndsWith("Duplicate Count: 2\r\n"));
}

TEST_F(SavingTheLog, AsksAboutTheNameWithTheExtensionAdded)
{
    folder.Write(L"report.txt", "old");

    Save({L"report"});

    EXPECT_EQ(user.messages.front(), QuestionAbout(L"report.txt"));
}

TEST_F(SavingTheLog, HasEmptiedTheFileAndHoldsItAloneWhenItAsks)
{
    folder.Write(L"report.txt", "old");
    bool emptied = false;
    bool shared = true;
    user.whenAsked = [&]
    {
        emptied = std::filesystem::file_size(folder.PathOf(L"report.txt")) == 0;
        const std::ifstream other(std::filesystem::path(folder.PathOf(L"report.txt")));
        shared = other.is_open();
    };

    Save({L"report.txt"});

    EXPECT_TRUE(emptied);
    EXPECT_FALSE(shared);
}

TEST_F(SavingTheLog, LeavesTheFileEmptyAndAsksForAnotherNameWhenTheUserDisagrees)
{
    folder.Write(L"old.txt", "old");
    user.answer = IDCANCEL;

    Save({L"old.txt", L"new.txt"});

    EXPECT_THAT(user.messages, ElementsAre(QuestionAbout(L"old.txt"), anotherName, SavedAt(L"new.txt")));
    EXPECT_TRUE(folder.Has(L"old.txt"));
    EXPECT_EQ(folder.Read(L"old.txt"), "");
    EXPECT_THAT(folder.Read(L"new.txt"), HasSubstr("Meeting"));
}

TEST_F(SavingTheLog, LetsGoOfTheFileBeforeItAsksForAnotherName)
{
    folder.Write(L"report.txt", "old");
    user.answer = IDCANCEL;

    Save({L"report.txt"});

    EXPECT_TRUE(std::filesystem::remove(folder.PathOf(L"report.txt")));
    EXPECT_EQ(user.timesAsked, 2);
}
}    // namespace
