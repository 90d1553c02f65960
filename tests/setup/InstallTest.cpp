// A silent installation, and what it leaves on the machine.
#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <objbase.h>
#include <wrl/client.h>

#include <fstream>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr CLSID addInClass = {0x2E1CE4E6, 0x8591, 0x4C0A, {0xA3, 0xC2, 0x46, 0xA0, 0xD2, 0xC1, 0xE3, 0x71}};

constexpr wchar_t addInFile[] = L"TalmoreQuorvexOutlookDuplicateRemover.dll";
constexpr wchar_t serverFile[] = L"QuorvexDll.dll";

class Installation : public SetupFixture
{
protected:
    static std::wstring InstalledPath(For whom, const wchar_t* file)
    {
        return (installer::UsualFolder(whom) / L"x64" / file).wstring();
    }
    static std::wstring LoadedPath(const wchar_t* file)
    {
        wchar_t path[MAX_PATH] = L"";
        if (const HMODULE module = ::GetModuleHandleW(file))
            ::GetModuleFileNameW(module, path, MAX_PATH);
        return path;
    }
};

constexpr wchar_t classKey[] =
    L"Software\\Classes\\CLSID\\{2E1CE4E6-8591-4C0A-A3C2-46A0D2C1E371}\\InprocServer32";

DWORD LoadBehavior(HKEY root)
{
    DWORD value = 0;
    DWORD size = sizeof value;
    ::RegGetValueW(root,
                   L"Software\\Microsoft\\Office\\Outlook\\Addins\\TalmoreQuorvexOutlookDuplicate.Duplicat",
                   L"LoadBehavior", RRF_RT_REG_DWORD, nullptr, &value, &size);
    return value;
}

bool IsBelow(const std::wstring& path, const std::wstring& root)
{
    return path.starts_with(root);
}

TEST_F(Installation, PutsItsFilesIntoTheUsersOwnFolder)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    const std::filesystem::path folder = installer::UsualFolder(For::user);
    for (const wchar_t* file : {L"x64\\TalmoreQuorvexOutlookDuplicateRemover.dll", L"x64\\QuorvexDll.dll",
                                L"x64\\LocalMapi.dll", L"x64\\tqodr.exe", L"x64\\mailexplorer.exe",
                                L"eula.dat", L"tqodr_v1.0.chm", L"LICENSE.txt", L"uninstall.exe"})
        EXPECT_TRUE(std::filesystem::is_regular_file(folder / file)) << file;
    EXPECT_FALSE(std::filesystem::exists(folder / L"x86"));
    for (const std::wstring& file : AddedFiles())
        EXPECT_TRUE(IsBelow(file, folder.parent_path().parent_path().wstring())) << file;
}

TEST_F(Installation, OfAUserRegistersForHimAlone)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    EXPECT_EQ(RegistryText(HKEY_CURRENT_USER, classKey, L""), InstalledPath(For::user, addInFile));
    EXPECT_EQ(RegistryText(HKEY_CURRENT_USER, L"Software\\Classes\\QuorvexDll.RDOSession\\CLSID", L""),
              L"{72559189-E9E5-476E-8CAD-B12D4F24CE09}");
    EXPECT_EQ(LoadBehavior(HKEY_CURRENT_USER), 3u);
    // The system's own mirror of classes for the other kind of programs is left out.
    for (const std::wstring& entry : AddedEntries())
        EXPECT_TRUE(!IsBelow(entry, L"HKLM") || entry.find(L"\\Wow6432Node\\") != entry.npos) << entry;
}

TEST_F(Installation, TellsTheProductWhereItLies)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    EXPECT_EQ(RegistryText(HKEY_CURRENT_USER, L"Software\\Talmorex\\Talmore Outlook Manager", L"Path"),
              installer::UsualFolder(For::user).wstring());
}

TEST_F(Installation, OfTheMachineTellsTheProductOfEitherKindWhereItLies)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY})
    {
        HKEY key = nullptr;
        ASSERT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Talmorex\\Talmore Outlook Manager", 0,
                                  KEY_READ | view, &key),
                  ERROR_SUCCESS);
        wchar_t path[MAX_PATH] = L"";
        DWORD size = sizeof path;
        ::RegQueryValueExW(key, L"Path", nullptr, nullptr, reinterpret_cast<BYTE*>(path), &size);
        ::RegCloseKey(key);
        EXPECT_EQ(path, installer::UsualFolder(For::everyone).wstring());
    }
}

TEST_F(Installation, OfTheMachineShowsTheAddInToEveryUsersOutlook)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, classKey, L""), InstalledPath(For::everyone, addInFile));
    EXPECT_EQ(LoadBehavior(HKEY_LOCAL_MACHINE), 3u);
}

TEST_F(Installation, IsForTheMachineWhenAnAdministratorSaysNothing)
{
    ASSERT_EQ(installer::Run(L""), installer::done);

    EXPECT_TRUE(installer::EntryText(For::everyone, L"DisplayName"));
    EXPECT_FALSE(installer::EntryText(For::user, L"DisplayName"));
}

TEST_F(Installation, HasAnEntryForItsRemoval)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    const std::wstring folder = installer::UsualFolder(For::user).wstring();
    EXPECT_EQ(installer::EntryText(For::user, L"DisplayName"), L"Talmore Quorvex Outlook Duplicate Remover");
    EXPECT_EQ(installer::EntryText(For::user, L"DisplayVersion"), L"" TQODR_VERSION);
    EXPECT_EQ(installer::EntryText(For::user, L"Publisher"), L"Talmorex");
    EXPECT_EQ(installer::EntryText(For::user, L"InstallLocation"), folder);
    EXPECT_EQ(installer::EntryText(For::user, L"UninstallString"), L"\"" + folder + L"\\uninstall.exe\"");
    EXPECT_EQ(installer::EntryText(For::user, L"QuietUninstallString"),
              L"\"" + folder + L"\\uninstall.exe\" /S");
    EXPECT_EQ(installer::EntryText(For::user, L"DisplayIcon"), folder + L"\\uninstall.exe,0");
    EXPECT_EQ(installer::EntryNumber(For::user, L"NoModify"), 1u);
    EXPECT_EQ(installer::EntryNumber(For::user, L"NoRepair"), 1u);
}

TEST_F(Installation, TellsTheSizeOfItsFilesInKilobytes)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    std::uintmax_t bytes = 0;
    for (const std::wstring& file : AddedFiles())
        if (std::filesystem::is_regular_file(file))
            bytes += std::filesystem::file_size(file);
    const double told = installer::EntryNumber(For::user, L"EstimatedSize").value_or(0);
    EXPECT_NEAR(told, static_cast<double>(bytes) / 1024, 500);
}

TEST_F(Installation, GoesIntoTheFolderThatIsNamed)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring() + L"\\a\\b"), installer::done);

    EXPECT_TRUE(std::filesystem::exists(scratch / L"a\\b\\x64\\QuorvexDll.dll"));
    EXPECT_EQ(installer::EntryText(For::everyone, L"InstallLocation"), (scratch / L"a\\b").wstring());
}

TEST_F(Installation, LetsComCreateTheAddIn)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);

    {
        ComPtr<IDispatch> addIn;
        EXPECT_EQ(::CoCreateInstance(addInClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch), &addIn),
                  S_OK);
        EXPECT_EQ(LoadedPath(addInFile), InstalledPath(For::everyone, addInFile));
    }
    ::CoFreeUnusedLibrariesEx(0, 0);
    ::CoUninitialize();
}

TEST_F(Installation, LetsComCreateTheMailStoreServerByItsName)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);

    {
        CLSID server{};
        ASSERT_EQ(::CLSIDFromProgID(L"QuorvexDll.RDOSession", &server), S_OK);
        ComPtr<IDispatch> session;
        EXPECT_EQ(::CoCreateInstance(server, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch), &session),
                  S_OK);
        EXPECT_EQ(LoadedPath(serverFile), InstalledPath(For::everyone, serverFile));
    }
    // While it is loaded the removal is refused.
    ::CoFreeUnusedLibrariesEx(0, 0);
    ::CoUninitialize();
}

TEST_F(Installation, MakesTheHostLoadTheAddIn)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    const std::wstring host = (installer::UsualFolder(For::everyone) / L"x64\\mailexplorer.exe").wstring();
    const std::string listed = installer::OutputOf(L"\"" + host + L"\" --list-addins");

    EXPECT_NE(listed.find("TalmoreQuorvexOutlookDuplicate.Duplicat"), listed.npos) << listed;
    EXPECT_NE(listed.find("Loaded"), listed.npos) << listed;
}
}    // namespace
