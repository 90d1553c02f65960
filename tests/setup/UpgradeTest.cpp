// An installation over one that is there.
#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <fstream>
#include <memory>
#include <type_traits>

namespace
{
struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

// A file of the former version, other than the one that replaces it.
void MakeOlder(const std::filesystem::path& file)
{
    std::ofstream(file, std::ios::binary | std::ios::app) << "older";
}

class Upgrade : public SetupFixture
{
protected:
    const std::filesystem::path folder = installer::UsualFolder(For::everyone);

    void SetUp() override { ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done); }
};

TEST_F(Upgrade, ReplacesTheFilesAndChangesNothingElse)
{
    const auto size = std::filesystem::file_size(folder / L"x64\\tqodr.exe");
    StartFromHere();
    MakeOlder(folder / L"x64\\tqodr.exe");
    std::ofstream(folder / L"eula.dat") << "older";

    ASSERT_EQ(installer::Run(L""), installer::done);

    EXPECT_EQ(std::filesystem::file_size(folder / L"x64\\tqodr.exe"), size);
    EXPECT_GT(std::filesystem::file_size(folder / L"eula.dat"), 5u);
    ExpectNothingChanged();
}

TEST_F(Upgrade, CanBeRemovedLikeAFirstInstallation)
{
    ASSERT_EQ(installer::Run(L""), installer::done);

    ASSERT_TRUE(installer::Remove(folder, For::everyone));

    EXPECT_FALSE(std::filesystem::exists(folder.parent_path()));
    EXPECT_EQ(AddedEntries(), RegistryImage::Entries());
}

TEST_F(Upgrade, MovesToAnotherFolderThatIsNamed)
{
    ASSERT_EQ(installer::Run(L"/D=" + scratch.wstring()), installer::done);

    EXPECT_FALSE(std::filesystem::exists(folder.parent_path()));
    EXPECT_TRUE(std::filesystem::exists(scratch / L"x64\\QuorvexDll.dll"));
    EXPECT_EQ(installer::EntryText(For::everyone, L"InstallLocation"), scratch.wstring());
    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Talmorex\\Talmore Outlook Manager", L"Path"),
              scratch.wstring());
}

TEST_F(Upgrade, StaysWithTheUsersWhomTheProductIsFor)
{
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/CURRENTUSER"), installer::installedForOthers);

    ExpectNothingChanged();
}

TEST_F(Upgrade, IsRefusedWhileALibraryIsInUse)
{
    StartFromHere();
    const HMODULE used = ::LoadLibraryW((folder / L"x64\\QuorvexDll.dll").c_str());
    ASSERT_NE(used, nullptr);

    EXPECT_EQ(installer::Run(L""), installer::stillOpen);

    ::FreeLibrary(used);
    ExpectNothingChanged();
}

// The help's viewer holds its file.
TEST_F(Upgrade, ThatCannotReplaceAFileLeavesTheFormerVersionWorking)
{
    StartFromHere();
    MakeOlder(folder / L"x64\\tqodr.exe");
    const auto size = std::filesystem::file_size(folder / L"x64\\tqodr.exe");
    Handle held(::CreateFileW((folder / L"tqodr_v1.0.chm").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                              OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);

    EXPECT_EQ(installer::Run(L""), installer::stillOpen);

    held.reset();
    EXPECT_EQ(std::filesystem::file_size(folder / L"x64\\tqodr.exe"), size);
    ExpectNothingChanged();
}
}    // namespace
