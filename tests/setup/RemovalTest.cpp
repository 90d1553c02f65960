// A removal takes back all that the installation made, and nothing else.
#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <fstream>

namespace
{
constexpr wchar_t pathKey[] = L"Software\\Talmorex\\Talmore Outlook Manager";

class Removal : public SetupFixture
{
};

TEST_F(Removal, OfAUsersInstallationLeavesTheMachineAsItWas)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::user), For::user));

    ExpectNothingChanged();
}

TEST_F(Removal, OfTheMachinesInstallationLeavesTheMachineAsItWas)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::everyone), For::everyone));

    ExpectNothingChanged();
}

TEST_F(Removal, TakesTheFoldersThatWereMadeForIt)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring() + L"\\a\\b"), installer::done);

    ASSERT_TRUE(installer::Remove(scratch / L"a\\b", For::everyone));

    EXPECT_FALSE(std::filesystem::exists(scratch));
}

TEST_F(Removal, LeavesAFolderThatWasThereBefore)
{
    std::filesystem::create_directory(scratch);
    ASSERT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring()), installer::done);

    ASSERT_TRUE(installer::Remove(scratch, For::everyone));

    EXPECT_TRUE(std::filesystem::is_empty(scratch));
}

TEST_F(Removal, LeavesTheUsersOwnFiles)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring()), installer::done);
    std::ofstream(scratch / L"my notes.txt") << "mine";
    std::ofstream(scratch / L"x64\\report.txt") << "mine";

    ASSERT_TRUE(installer::Remove(scratch, For::everyone));

    EXPECT_EQ(AddedFiles(), (std::set<std::wstring>{scratch.wstring(), (scratch / L"my notes.txt").wstring(),
                                                    (scratch / L"x64").wstring(),
                                                    (scratch / L"x64\\report.txt").wstring()}));
}

TEST_F(Removal, LeavesKeysThatOthersUseAsWell)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);
    SetRegistryText(HKEY_CURRENT_USER, L"Software\\Talmorex\\Another Product", L"Name", L"another");

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::user), For::user));

    EXPECT_EQ(AddedEntries(),
              (RegistryImage::Entries{L"HKCU\\Software\\Talmorex\\Another Product",
                                      L"HKCU\\Software\\Talmorex\\Another Product|\"Name\"=\"another\""}));
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Talmorex");
}

TEST_F(Removal, PutsAnothersFolderBackIntoTheSharedValue)
{
    SetRegistryText(HKEY_CURRENT_USER, pathKey, L"Path", L"C:\\Somebody else");
    StartFromHere();
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);
    EXPECT_EQ(RegistryText(HKEY_CURRENT_USER, pathKey, L"Path"), installer::UsualFolder(For::user).wstring());

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::user), For::user));

    ExpectNothingChanged();
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Talmorex");
}

TEST_F(Removal, GoesOnWithoutALibraryThatIsGone)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);
    const std::filesystem::path folder = installer::UsualFolder(For::user);
    std::filesystem::remove(folder / L"x64\\TalmoreQuorvexOutlookDuplicateRemover.dll");
    std::filesystem::remove(folder / L"x64\\QuorvexDll.dll");

    ASSERT_TRUE(installer::Remove(folder, For::user));

    ExpectNothingChanged();
}

TEST_F(Removal, TellsByItsExitCodeThatItIsDone)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    EXPECT_EQ(installer::RemovalCode(installer::UsualFolder(For::user)), installer::done);

    ExpectNothingChanged();
}
}    // namespace
