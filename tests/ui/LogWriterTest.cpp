#include "ui/LogWriter.h"

#include <windows.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{
class LogFile : public testing::Test
{
protected:
    std::vector<std::string> pieces;

    std::string Write(const std::vector<LogRow>& rows, UINT codePage = 1252)
    {
        const StringTable strings(::GetModuleHandleW(nullptr));
        LogWriter(
            strings, [this](std::string_view piece) { pieces.emplace_back(piece); }, codePage)
            .WriteReport(rows);
        std::string file;
        for (const std::string& piece : pieces)
            file += piece;
        return file;
    }

    // The line of the one row, whose subject is empty so that no heading stands before it.
    std::string LineOf(const std::wstring& folderName, UINT codePage = 1252)
    {
        Write({{folderName, L"", L"1"}}, codePage);
        return pieces.size() > 1 ? pieces.back() : "";
    }
};

const std::string title = "Talmore Quorvex Outlook Duplicate Remover\r\n";

TEST_F(LogFile, GroupsRowsWithTheSameSubjectUnderOneItemNumber)
{
    const std::string file =
        Write({{L"Inbox", L"Meeting", L"2"}, {L"Sent Items", L"Meeting", L"1"}, {L"Inbox", L"Report", L"3"}});

    EXPECT_EQ(file, title + "\r\nItem Number: 1\r\n"
                            "Subject: Meeting\r\n"
                            "Folder Name: Inbox    Duplicate Count: 2\r\n"
                            "Folder Name: Sent Items    Duplicate Count: 1\r\n"
                            "\r\nItem Number: 2\r\n"
                            "Subject: Report\r\n"
                            "Folder Name: Inbox    Duplicate Count: 3\r\n");
}

TEST_F(LogFile, StartsANewItemWhenASubjectComesBackAfterAnother)
{
    const std::string file = Write({{L"A", L"x", L"1"}, {L"B", L"y", L"1"}, {L"C", L"x", L"1"}});

    EXPECT_NE(file.find("Item Number: 3\r\nSubject: x\r\nFolder Name: C"), std::string::npos);
}

TEST_F(LogFile, TellsSubjectsApartByCase)
{
    const std::string file = Write({{L"A", L"x", L"1"}, {L"B", L"X", L"1"}});

    EXPECT_NE(file.find("Item Number: 2\r\nSubject: X\r\n"), std::string::npos);
}

TEST_F(LogFile, GivesAFirstRowWithoutASubjectNoHeading)
{
    const std::string file = Write({{L"A", L"", L"1"}, {L"B", L"x", L"1"}});

    EXPECT_EQ(file, title + "Folder Name: A    Duplicate Count: 1\r\n"
                            "\r\nItem Number: 1\r\nSubject: x\r\n"
                            "Folder Name: B    Duplicate Count: 1\r\n");
}

TEST_F(LogFile, GivesALaterRowWithoutASubjectAHeadingWithAnEmptyOne)
{
    const std::string file = Write({{L"A", L"x", L"1"}, {L"B", L"", L"1"}});

    EXPECT_NE(file.find("\r\nItem Number: 2\r\nSubject: \r\n"), std::string::npos);
}

TEST_F(LogFile, HoldsTheTitleAloneWithoutRows)
{
    EXPECT_EQ(Write({}), title);
}

TEST_F(LogFile, WritesFolderAndCountOfARowAsOnePiece)
{
    Write({{L"Inbox", L"x", L"1"}});

    EXPECT_EQ(pieces, (std::vector<std::string>{title, "\r\nItem Number: 1\r\n", "Subject: x\r\n",
                                                "Folder Name: Inbox    Duplicate Count: 1\r\n"}));
}

TEST_F(LogFile, LeavesPercentSignsOfAMailAlone)
{
    EXPECT_EQ(LineOf(L"100% %s %d"), "Folder Name: 100% %s %d    Duplicate Count: 1\r\n");
}

TEST_F(LogFile, WritesLettersOfTheCodePageAsOneByte)
{
    EXPECT_EQ(LineOf(L"Entw\u00FCrfe"), "Folder Name: Entw\xFCrfe    Duplicate Count: 1\r\n");
}

TEST_F(LogFile, ReplacesWhatTheCodePageLacksByItsDefaultCharacter)
{
    EXPECT_EQ(LineOf(L"\u4F60\u597D"), "Folder Name: ??    Duplicate Count: 1\r\n");
}

TEST_F(LogFile, CutsAPieceOfDoubleByteCharactersToItsNumberOfCharacters)
{
    // Two characters take four bytes, so the two bytes of the line end fall off behind.
    EXPECT_EQ(LineOf(L"\u65E5\u672C", 932), "Folder Name: \x93\xFA\x96\x7B    Duplicate Count: 1");
}

TEST_F(LogFile, CutsAlsoBetweenTheTwoBytesOfOneCharacter)
{
    Write({{L"A", L"\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5\u65E5", L"1"}},
          932);

    const std::string& subject = pieces.at(2);
    EXPECT_EQ(subject.size(), 9u + 13u + 2u);
    EXPECT_EQ(subject.back(), '\x93');
}

TEST_F(LogFile, EndsAPieceAtItsFirstZero)
{
    EXPECT_EQ(LineOf(std::wstring(L"In\0box", 6)), "Folder Name: In");
}

TEST_F(LogFile, LeavesOutAPieceThatCannotBeConverted)
{
    constexpr UINT noCodePage = 54321;

    EXPECT_EQ(Write({{L"Inbox", L"x", L"1"}}, noCodePage), "");
}

TEST_F(LogFile, HasNoMarkInFrontAndNoZeroBehind)
{
    const std::string file = Write({{L"Inbox", L"x", L"1"}});

    EXPECT_EQ(file.front(), 'T');
    EXPECT_EQ(file.back(), '\n');
}

TEST_F(LogFile, GoesIntoAnOpenFileByteForByte)
{
    wchar_t folder[MAX_PATH];
    wchar_t path[MAX_PATH];
    ::GetTempPathW(MAX_PATH, folder);
    ::GetTempFileNameW(folder, L"log", 0, path);
    const HANDLE file = ::CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    const std::vector<LogRow> rows{{L"Inbox", L"Meeting", L"2"}};

    LogWriter(StringTable(::GetModuleHandleW(nullptr)), FileSink(file), 1252).WriteReport(rows);

    char content[1000];
    DWORD length = 0;
    ::SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    ::ReadFile(file, content, sizeof(content), &length, nullptr);
    ::CloseHandle(file);
    EXPECT_EQ(std::string(content, length), Write(rows));
}
}    // namespace
