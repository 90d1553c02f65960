#include "localmapi/FileStream.h"

#include "localmapi/ComBoundary.h"

#include <mapix.h>

#include <mapiutil.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
class FileStream : public testing::Test
{
protected:
    FileStream() { std::filesystem::create_directory(folder); }
    ~FileStream() override { std::filesystem::remove_all(folder); }

    const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                         ("localmapi-stream-" + std::to_string(GetCurrentProcessId()));
};
}    // namespace

TEST_F(FileStream, WritesANewFileAndReadsItAgain)
{
    const std::wstring path = (folder / "new.bin").wstring();
    char read[6] = {};

    OpenFileStream(path, L"", STGM_CREATE | STGM_READWRITE)->Write("Hello", 5, nullptr);
    OpenFileStream(path, L"", STGM_READ)->Read(read, 5, nullptr);

    EXPECT_STREQ(read, "Hello");
}

TEST_F(FileStream, MakesAFileOfANewNameInTheFolder)
{
    OpenFileStream(folder.wstring(), L"abc", SOF_UNIQUEFILENAME | STGM_CREATE | STGM_READWRITE);
    OpenFileStream(folder.wstring(), L"abc", SOF_UNIQUEFILENAME | STGM_CREATE | STGM_READWRITE);

    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 2);
}

TEST_F(FileStream, RefusesAFileThatIsNotThere)
{
    EXPECT_THROW(OpenFileStream((folder / "missing").wstring(), L"", STGM_READ), MapiError);
}
