#include "console/LogFile.h"
#include "console/CommandLine.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace
{
// A folder of the test's own.
class LogFileTest : public testing::Test
{
protected:
    LogFileTest()
        : folder(std::filesystem::temp_directory_path() /
                 (L"tqodr-log-" + std::to_wstring(GetCurrentProcessId())))
    {
        std::filesystem::create_directory(folder);
    }

    ~LogFileTest() override { std::filesystem::remove_all(folder); }

    void WriteOlderFile() const { std::ofstream(path) << "older"; }

    std::string ReadFileBack() const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    long CountFiles() const
    {
        return static_cast<long>(std::distance(std::filesystem::directory_iterator(folder),
                                               std::filesystem::directory_iterator()));
    }

    const std::filesystem::path folder;
    const std::filesystem::path path = folder / L"report.txt";
};
}    // namespace

TEST_F(LogFileTest, TakesThePlaceOfAnOlderFile)
{
    WriteOlderFile();
    LogFile log(path.wstring());

    const std::wstring failure = log.Save("new\r\n");

    EXPECT_EQ(failure, L"");
    EXPECT_EQ(ReadFileBack(), "new\r\n");
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(LogFileTest, LeavesNothingBehindAndAnOlderFileAloneWithoutSave)
{
    WriteOlderFile();

    {
        const LogFile log(path.wstring());
    }

    EXPECT_EQ(ReadFileBack(), "older");
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(LogFileTest, SaysWhyAnOlderFileCannotBeReplacedInTheEndAndLeavesItWhole)
{
    WriteOlderFile();
    LogFile log(path.wstring());
    const FileHandle reader(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(reader.get(), INVALID_HANDLE_VALUE);

    const std::wstring failure = log.Save("new");

    EXPECT_NE(failure, L"");
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(LogFileTest, RefusesAPlaceThatCannotBeWrittenToAtOnce)
{
    WriteOlderFile();
    const FileHandle reader(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(reader.get(), INVALID_HANDLE_VALUE);

    EXPECT_THROW(LogFile{path.wstring()}, UsageError);
    EXPECT_THROW(LogFile{folder.wstring()}, UsageError);
    EXPECT_THROW(LogFile{(folder / L"missing" / L"report.txt").wstring()}, UsageError);
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(LogFileTest, RefusesToReplaceAReadOnlyFile)
{
    WriteOlderFile();
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);

    EXPECT_THROW(LogFile{path.wstring()}, UsageError);

    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}
