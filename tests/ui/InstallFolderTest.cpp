#include "ui/InstallFolder.h"

#include "tests/ui/InstalledFolder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace
{
class InstalledProduct : public testing::Test
{
protected:
    InstallEntry entry;
    InstallEntry userEntry{HKEY_CURRENT_USER};

    void SetRaw(DWORD type, const std::wstring& data) const
    {
        entry.SetRaw(type, data.data(), static_cast<DWORD>(data.size() * sizeof(wchar_t)));
    }
};

TEST_F(InstalledProduct, LiesInTheFolderThatTheRegistryNames)
{
    entry.Set(L"C:\\Program Files\\Talmorex");

    EXPECT_EQ(InstallFolder(), L"C:\\Program Files\\Talmorex");
    EXPECT_EQ(InstallFolderOfHelp(), L"C:\\Program Files\\Talmorex");
}

TEST_F(InstalledProduct, LiesNowhereWithoutTheValueOrTheKey)
{
    entry.Set(L"C:\\Talmorex");

    entry.Remove();

    EXPECT_EQ(InstallFolder(), L"");
    EXPECT_EQ(InstallFolderOfHelp(), L"");

    entry.RemoveKey();

    EXPECT_EQ(InstallFolder(), L"");
    EXPECT_EQ(InstallFolderOfHelp(), L"");
}

TEST_F(InstalledProduct, LiesInTheUsersFolderWhereTheMachineNamesNone)
{
    entry.Remove();
    userEntry.Set(L"C:\\Users\\me\\Talmorex");

    EXPECT_EQ(InstallFolder(), L"C:\\Users\\me\\Talmorex");
    EXPECT_EQ(InstallFolderOfHelp(), L"C:\\Users\\me\\Talmorex");
}

TEST_F(InstalledProduct, LiesInTheMachinesFolderBeforeTheUsers)
{
    entry.Set(L"C:\\Program Files\\Talmorex");
    userEntry.Set(L"C:\\Users\\me\\Talmorex");

    EXPECT_EQ(InstallFolder(), L"C:\\Program Files\\Talmorex");
    EXPECT_EQ(InstallFolderOfHelp(), L"C:\\Program Files\\Talmorex");
}

TEST_F(InstalledProduct, IsFoundByHelpInUsersPathsOfThatLengthAsWell)
{
    entry.Remove();
    const std::wstring longest(129, L'a');
    userEntry.Set(longest);
    EXPECT_EQ(InstallFolderOfHelp(), longest);

    userEntry.Set(longest + L"a");
    EXPECT_EQ(InstallFolderOfHelp(), L"");
    EXPECT_EQ(InstallFolder(), longest + L"a");
}

TEST_F(InstalledProduct, IsFoundByHelpInPathsOfAtMost130CharactersWithTheZero)
{
    const std::wstring longest(129, L'a');
    entry.Set(longest);
    EXPECT_EQ(InstallFolderOfHelp(), longest);

    entry.Set(longest + L"a");
    EXPECT_EQ(InstallFolderOfHelp(), L"");
    EXPECT_EQ(InstallFolder(), longest + L"a");
}

TEST_F(InstalledProduct, IsFoundInAPathWithVariablesThatStayAsTheyAre)
{
    SetRaw(REG_EXPAND_SZ, std::wstring(L"%TEMP%\\x") + L'\0');

    EXPECT_EQ(InstallFolder(), L"%TEMP%\\x");
    EXPECT_EQ(InstallFolderOfHelp(), L"%TEMP%\\x");
}

TEST_F(InstalledProduct, IsFoundInAListOfTextsThatEndsInTwoZeros)
{
    const std::wstring list(L"C:\\x\0\0", 6);
    SetRaw(REG_MULTI_SZ, list);
    EXPECT_EQ(InstallFolderOfHelp(), L"C:\\x");

    SetRaw(REG_MULTI_SZ, list.substr(0, 5));
    EXPECT_EQ(InstallFolderOfHelp(), L"");
}

TEST_F(InstalledProduct, IsNotFoundInValuesThatAreNoText)
{
    const DWORD number = 0x00410041;
    SetRaw(REG_BINARY, std::wstring(L"C:\\x") + L'\0');
    EXPECT_EQ(InstallFolder(), L"");
    EXPECT_EQ(InstallFolderOfHelp(), L"");

    entry.SetRaw(REG_DWORD, &number, sizeof number);
    EXPECT_EQ(InstallFolder(), L"");
    EXPECT_EQ(InstallFolderOfHelp(), L"");
}

TEST_F(InstalledProduct, IsNotFoundInATextWithoutItsZero)
{
    // Where a zero follows the data in memory, it is stored as well.
    entry.SetRaw(REG_SZ, L"C:\\xy", 4 * sizeof(wchar_t));

    EXPECT_EQ(InstallFolder(), L"");
    EXPECT_EQ(InstallFolderOfHelp(), L"");
}
}    // namespace
