#include "localmapi/Registration.h"

#include "localmapi/RegistryKey.h"
#include "localmapi/StorePath.h"
#include "tests/localmapi/Sandbox.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <optional>

namespace
{
constexpr wchar_t clientsPath[] = L"Software\\Clients\\Mail";
constexpr wchar_t ourPath[] = L"Software\\Clients\\Mail\\LocalMapi";

class MailClientRegistration : public testing::Test
{
protected:
    static void SetDefaultClient(const wchar_t* name)
    {
        RegistryKey::Create(HKEY_LOCAL_MACHINE, clientsPath).WriteText(L"", name);
    }

    static std::optional<std::wstring> Value(const std::wstring& path, const std::wstring& name)
    {
        const auto key = RegistryKey::Open(HKEY_LOCAL_MACHINE, path);
        return key ? key->ReadText(name) : std::nullopt;
    }

    static std::optional<std::wstring> DefaultClient() { return Value(clientsPath, L""); }

    RegistrySandbox sandbox{HKEY_LOCAL_MACHINE};
};

}    // namespace

TEST_F(MailClientRegistration, MakesTheLibraryTheDefaultMailClient)
{
    RegisterMailClient(L"C:\\mail\\LocalMapi.dll");

    EXPECT_EQ(DefaultClient(), L"LocalMapi");
    EXPECT_EQ(Value(ourPath, L"DLLPathEx"), L"C:\\mail\\LocalMapi.dll");
}

TEST_F(MailClientRegistration, PutsTheFormerDefaultClientBack)
{
    SetDefaultClient(L"Other Mail");
    RegisterMailClient(L"C:\\mail\\LocalMapi.dll");

    UnregisterMailClient();

    EXPECT_EQ(DefaultClient(), L"Other Mail");
    EXPECT_FALSE(RegistryKey::Open(HKEY_LOCAL_MACHINE, ourPath));
}

TEST_F(MailClientRegistration, LeavesNoDefaultClientWhereThereWasNone)
{
    RegisterMailClient(L"C:\\mail\\LocalMapi.dll");

    UnregisterMailClient();

    EXPECT_EQ(DefaultClient(), std::nullopt);
}

TEST_F(MailClientRegistration, RemembersTheFormerClientThroughASecondRegistration)
{
    SetDefaultClient(L"Other Mail");
    RegisterMailClient(L"C:\\old\\LocalMapi.dll");

    RegisterMailClient(L"C:\\new\\LocalMapi.dll");
    const auto path = Value(ourPath, L"DLLPathEx");
    UnregisterMailClient();

    EXPECT_EQ(path, L"C:\\new\\LocalMapi.dll");
    EXPECT_EQ(DefaultClient(), L"Other Mail");
}

TEST_F(MailClientRegistration, LeavesAClientThatBecameTheDefaultMeanwhile)
{
    SetDefaultClient(L"Other Mail");
    RegisterMailClient(L"C:\\mail\\LocalMapi.dll");
    SetDefaultClient(L"Newcomer");

    UnregisterMailClient();

    EXPECT_EQ(DefaultClient(), L"Newcomer");
}

TEST_F(MailClientRegistration, LeavesOtherClientsKeysAlone)
{
    const std::wstring otherPath = std::wstring(clientsPath) + L"\\Other Mail";
    RegistryKey::Create(HKEY_LOCAL_MACHINE, otherPath).WriteText(L"DLLPathEx", L"C:\\other.dll");

    RegisterMailClient(L"C:\\mail\\LocalMapi.dll");
    UnregisterMailClient();

    EXPECT_EQ(Value(otherPath, L"DLLPathEx"), L"C:\\other.dll");
}

TEST_F(MailClientRegistration, CanBeTakenBackWhenItWasNeverMade)
{
    SetDefaultClient(L"Other Mail");

    UnregisterMailClient();
    UnregisterMailClient();

    EXPECT_EQ(DefaultClient(), L"Other Mail");
}

class StorePath : public testing::Test
{
protected:
    static void SetRegistryPath(const wchar_t* path)
    {
        RegistryKey::Create(HKEY_CURRENT_USER, L"Software\\Talmorex\\LocalMapi").WriteText(L"Path", path);
    }
};

TEST_F(StorePath, IsTheEnvironmentsFirst)
{
    const StoreVariable variable(L"C:\\mail\\here.db");

    EXPECT_EQ(FindStorePath(), L"C:\\mail\\here.db");
}

TEST_F(StorePath, KeepsLongPathsWhole)
{
    const std::wstring path = L"C:\\" + std::wstring(2000, L'x') + L".db";
    const StoreVariable variable(path.c_str());

    EXPECT_EQ(FindStorePath(), path);
}

TEST_F(StorePath, IsTheRegistrysWithoutTheVariable)
{
    const RegistrySandbox sandbox(HKEY_CURRENT_USER);
    const StoreVariable variable(nullptr);
    SetRegistryPath(L"C:\\mail\\there.db");

    EXPECT_EQ(FindStorePath(), L"C:\\mail\\there.db");
}

TEST_F(StorePath, IsNoneWhenNothingNamesOne)
{
    const RegistrySandbox sandbox(HKEY_CURRENT_USER);
    const StoreVariable variable(nullptr);

    EXPECT_EQ(FindStorePath(), std::nullopt);
}

TEST_F(StorePath, TurnsAUnixPathIntoADosPathWhereTheSystemCan)
{
    if (!GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_dos_file_name"))
        GTEST_SKIP() << "This Windows knows no Unix paths.";
    const StoreVariable variable(L"/tmp/mail.db");

    const std::optional<std::wstring> path = FindStorePath();

    ASSERT_TRUE(path);
    EXPECT_EQ(path->substr(1, 2), L":\\");
    EXPECT_NE(path->find(L"mail.db"), std::wstring::npos);
}
