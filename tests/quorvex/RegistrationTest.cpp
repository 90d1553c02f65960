// The module's self-registration for one user, in the scratch prefix that the tests run in.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{
constexpr const wchar_t* classKey = L"Software\\Classes\\CLSID\\{72559189-E9E5-476E-8CAD-B12D4F24CE09}";
constexpr const wchar_t* progIdKeys[] = {L"Software\\Classes\\QuorvexDll.RDOSession",
                                         L"Software\\Classes\\QuorvexDll.RDOSession.1"};

std::wstring UserValue(const std::wstring& key, const wchar_t* name = nullptr)
{
    wchar_t text[MAX_PATH] = L"";
    DWORD size = sizeof(text);
    if (RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) !=
        ERROR_SUCCESS)
        return L"(none)";
    return text;
}

bool UserHas(const std::wstring& key)
{
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS)
        return false;
    RegCloseKey(opened);
    return true;
}

class UserRegistration : public testing::Test
{
protected:
    UserRegistration()
    {
        const char* dist = std::getenv("TQODR_DIST");
        const std::string path = std::string("Z:") + (dist ? dist : ".") + "/QuorvexDll.dll";
        module = LoadLibraryA(path.c_str());
        if (module)
            install =
                reinterpret_cast<Install>(reinterpret_cast<void (*)()>(GetProcAddress(module, "DllInstall")));
    }
    ~UserRegistration() override
    {
        if (install)
            install(FALSE, L"user");
        if (module)
            FreeLibrary(module);
    }

    using Install = HRESULT(WINAPI*)(BOOL, LPCWSTR);
    HMODULE module = nullptr;
    Install install = nullptr;
};

TEST_F(UserRegistration, NamesTheModuleForBothKindsOfApartment)
{
    ASSERT_TRUE(install);

    EXPECT_EQ(install(TRUE, L"user"), S_OK);

    wchar_t path[MAX_PATH];
    GetModuleFileNameW(module, path, MAX_PATH);
    const std::wstring server = std::wstring(classKey) + L"\\InprocServer32";
    EXPECT_EQ(UserValue(server), path);
    EXPECT_EQ(UserValue(server, L"ThreadingModel"), L"Both");
    EXPECT_EQ(UserValue(std::wstring(progIdKeys[0]) + L"\\CurVer"), L"QuorvexDll.RDOSession.1");
}

TEST_F(UserRegistration, LeavesNothingBehindWhenTakenBack)
{
    ASSERT_TRUE(install);
    install(TRUE, L"user");

    EXPECT_EQ(install(FALSE, L"user"), S_OK);

    EXPECT_FALSE(UserHas(classKey));
    for (const wchar_t* key : progIdKeys)
        EXPECT_FALSE(UserHas(key));
}

TEST_F(UserRegistration, DoesNotTouchTheMachinesRegistration)
{
    ASSERT_TRUE(install);
    HKEY before = nullptr;
    const LSTATUS had = RegOpenKeyExW(HKEY_LOCAL_MACHINE, classKey, 0, KEY_READ, &before);
    if (before)
        RegCloseKey(before);

    install(TRUE, L"user");
    install(FALSE, L"user");

    HKEY after = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, classKey, 0, KEY_READ, &after), had);
    if (after)
        RegCloseKey(after);
}
}    // namespace
