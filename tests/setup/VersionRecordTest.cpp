// What Windows shows of the files that are delivered.
#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <vector>

namespace
{
std::wstring RecordText(const std::filesystem::path& file, const std::wstring& name)
{
    DWORD ignored = 0;
    std::vector<BYTE> record(::GetFileVersionInfoSizeW(file.c_str(), &ignored));
    void* text = nullptr;
    UINT length = 0;
    if (record.empty() ||
        !::GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(record.size()), record.data()) ||
        !::VerQueryValueW(record.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &length))
        return L"";
    return static_cast<const wchar_t*>(text);
}

void ExpectRecord(const std::filesystem::path& file)
{
    EXPECT_EQ(RecordText(file, L"CompanyName"), L"Talmorex") << file;
    EXPECT_EQ(RecordText(file, L"ProductName"), L"Talmore Quorvex Outlook Duplicate Remover") << file;
    EXPECT_EQ(RecordText(file, L"FileVersion"), L"" TQODR_VERSION) << file;
    EXPECT_EQ(RecordText(file, L"ProductVersion"), L"" TQODR_VERSION) << file;
    EXPECT_EQ(RecordText(file, L"OriginalFilename"), file.filename().wstring()) << file;
    EXPECT_NE(RecordText(file, L"FileDescription"), L"") << file;
}

class VersionRecord : public SetupFixture
{
};

TEST_F(VersionRecord, IsInEveryInstalledProgramAndLibrary)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(installer::UsualFolder(For::everyone) / L"x64"))
    {
        ExpectRecord(entry.path());
        ++count;
    }
    EXPECT_EQ(count, 5);
}

TEST_F(VersionRecord, IsInTheInstaller)
{
    EXPECT_EQ(RecordText(installer::File(), L"CompanyName"), L"Talmorex");
    EXPECT_EQ(RecordText(installer::File(), L"ProductName"), L"Talmore Quorvex Outlook Duplicate Remover");
    EXPECT_EQ(RecordText(installer::File(), L"FileVersion"), L"" TQODR_VERSION);
    EXPECT_EQ(RecordText(installer::File(), L"OriginalFilename"), installer::File().filename().wstring());
}
}    // namespace
