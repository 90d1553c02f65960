// What the installer does not do, and how it says so; it changes nothing then.
#include "tests/setup/SetupFixture.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <fstream>
#include <string>

namespace
{
// A text of the registry while the object lives; what stood there comes back.
class TextForNow
{
public:
    TextForNow(const std::wstring& key, const wchar_t* name, const std::wstring& text)
        : key(key),
          name(name),
          before(RegistryText(HKEY_LOCAL_MACHINE, key, name))
    {
        SetRegistryText(HKEY_LOCAL_MACHINE, key, name, text);
    }
    TextForNow(const TextForNow&) = delete;
    TextForNow& operator=(const TextForNow&) = delete;
    ~TextForNow()
    {
        if (before.empty())
            ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name);
        else
            SetRegistryText(HKEY_LOCAL_MACHINE, key, name, before);
    }

private:
    const std::wstring key;
    const wchar_t* const name;
    const std::wstring before;
};

// A window of the class that Outlook's windows are of.
class OutlookWindow
{
public:
    OutlookWindow()
    {
        WNDCLASSW description{};
        description.lpfnWndProc = ::DefWindowProcW;
        description.hInstance = ::GetModuleHandleW(nullptr);
        description.lpszClassName = L"rctrl_renwnd32";
        ::RegisterClassW(&description);
        window = ::CreateWindowExW(0, L"rctrl_renwnd32", L"Inbox", WS_OVERLAPPED, 0, 0, 10, 10, nullptr,
                                   nullptr, ::GetModuleHandleW(nullptr), nullptr);
    }
    OutlookWindow(const OutlookWindow&) = delete;
    OutlookWindow& operator=(const OutlookWindow&) = delete;
    ~OutlookWindow()
    {
        ::DestroyWindow(window);
        ::UnregisterClassW(L"rctrl_renwnd32", ::GetModuleHandleW(nullptr));
    }
    explicit operator bool() const { return window != nullptr; }

private:
    HWND window;
};

class Refusal : public SetupFixture
{
};

TEST_F(Refusal, OfAnInstallationWhileOutlookIsOpen)
{
    const OutlookWindow outlook;
    ASSERT_TRUE(outlook);

    EXPECT_EQ(installer::Run(L"/CURRENTUSER"), installer::stillOpen);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfARemovalWhileOutlookIsOpen)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);
    StartFromHere();
    const OutlookWindow outlook;
    ASSERT_TRUE(outlook);

    EXPECT_EQ(installer::RemovalCode(installer::UsualFolder(For::user)), installer::stillOpen);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfTwoKindsOfUsersAtOnce)
{
    EXPECT_EQ(installer::Run(L"/CURRENTUSER /ALLUSERS"), installer::wrongUsage);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfAKindOfProgramsThatIsUnknown)
{
    EXPECT_EQ(installer::Run(L"/ARCH=arm64"), installer::wrongUsage);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfAFolderWhoseHelpCouldNotBeFound)
{
    const std::wstring longest =
        scratch.wstring() + L"\\" + std::wstring(129 - scratch.wstring().size() - 1, L'a');

    EXPECT_EQ(installer::Run(L"/ALLUSERS /D=" + longest + L"a"), installer::wrongUsage);
    ExpectNothingChanged();

    EXPECT_EQ(installer::Run(L"/ALLUSERS /D=" + longest), installer::done);
}

TEST_F(Refusal, OfAFolderWithAnothersFileOfOneOfItsNames)
{
    std::filesystem::create_directory(scratch);
    std::ofstream(scratch / L"uninstall.exe") << "somebody else's";
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring()), installer::wrongUsage);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfTheLocalMailStoreBesideAnotherMailClient)
{
    const TextForNow client(L"Software\\Clients\\Mail", L"", L"Somebody's Mail");
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/ALLUSERS /LOCALSTORE"), installer::mailClientThere);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfTheLocalMailStoreForOneUser)
{
    EXPECT_EQ(installer::Run(L"/CURRENTUSER /LOCALSTORE"), installer::wrongUsage);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfARegistrationThatFailsLeavesNothing)
{
    // Without the platform's registrar neither server can be registered.
    const std::wstring overrides = L"Software\\Wine\\DllOverrides";
    SetRegistryText(HKEY_CURRENT_USER, overrides, L"atl", L"");
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/ALLUSERS"), installer::registrationFailed);

    ExpectNothingChanged();
    ::RegDeleteTreeW(HKEY_CURRENT_USER, overrides.c_str());
}

TEST_F(Refusal, OfAFolderBelowAFile)
{
    std::ofstream(scratch) << "a file where a folder should be";
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring() + L"\\x"), installer::wrongUsage);

    ExpectNothingChanged();
}

TEST_F(Refusal, OfAFolderThatCannotBeWrittenToLeavesNothing)
{
    std::filesystem::create_directory(scratch);
    std::ofstream(scratch / L"x64") << "a file where a folder should be";
    StartFromHere();

    EXPECT_EQ(installer::Run(L"/ALLUSERS /D=" + scratch.wstring()), installer::fileNotWritten);

    ExpectNothingChanged();
}

const wchar_t anotherClass[] = L"{11111111-2222-3333-4444-555555555555}";

// A mail-store server that somebody else has registered under the same name.
class AnotherServer : public SetupFixture
{
protected:
    const std::wstring progId = L"Software\\Classes\\QuorvexDll.RDOSession";

    void SetUp() override
    {
        SetRegistryText(HKEY_LOCAL_MACHINE, progId, L"", L"Another Server");
        SetRegistryText(HKEY_LOCAL_MACHINE, progId + L"\\CLSID", L"", anotherClass);
        SetRegistryText(HKEY_LOCAL_MACHINE,
                        std::wstring(L"Software\\Classes\\CLSID\\") + anotherClass + L"\\InprocServer32", L"",
                        L"C:\\another.dll");
        StartFromHere();
    }
    void TearDown() override
    {
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, progId.c_str());
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE,
                         (std::wstring(L"Software\\Classes\\CLSID\\") + anotherClass).c_str());
    }
};

TEST_F(AnotherServer, IsLeftAloneByAnInstallationForTheMachine)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, progId + L"\\CLSID", L""), anotherClass);
    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, progId, L""), L"Another Server");
    EXPECT_EQ(installer::EntryNumber(For::everyone, L"MailStoreServer"), 0u);
}

TEST_F(AnotherServer, IsLeftAloneByAnInstallationForOneUser)
{
    ASSERT_EQ(installer::Run(L"/CURRENTUSER"), installer::done);

    EXPECT_FALSE(AddedEntries().contains(L"HKCU\\Software\\Classes\\QuorvexDll.RDOSession"));
}

TEST_F(AnotherServer, IsLeftAloneByTheRemoval)
{
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::everyone), For::everyone));

    ExpectNothingChanged();
}

TEST_F(AnotherServer, ThatCameLaterIsLeftAloneByTheRemovalToo)
{
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, progId.c_str());
    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, progId.c_str());
    SetRegistryText(HKEY_LOCAL_MACHINE, progId, L"", L"Another Server");
    SetRegistryText(HKEY_LOCAL_MACHINE, progId + L"\\CLSID", L"", anotherClass);

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::everyone), For::everyone));

    ExpectNothingChanged();
}

class LocalMailStore : public SetupFixture
{
};

TEST_F(LocalMailStore, BecomesTheMailClientWhereThereIsNone)
{
    const TextForNow client(L"Software\\Clients\\Mail", L"", L"");
    StartFromHere();

    ASSERT_EQ(installer::Run(L"/ALLUSERS /LOCALSTORE"), installer::done);
    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Clients\\Mail", L""), L"LocalMapi");
    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Clients\\Mail\\LocalMapi", L"DLLPathEx"),
              (installer::UsualFolder(For::everyone) / L"x64\\LocalMapi.dll").wstring());

    ASSERT_TRUE(installer::Remove(installer::UsualFolder(For::everyone), For::everyone));
    ExpectNothingChanged();
}

TEST_F(LocalMailStore, IsNotTheMailClientUnlessAskedFor)
{
    const TextForNow client(L"Software\\Clients\\Mail", L"", L"");

    ASSERT_EQ(installer::Run(L"/ALLUSERS"), installer::done);

    EXPECT_EQ(RegistryText(HKEY_LOCAL_MACHINE, L"Software\\Clients\\Mail", L""), L"");
}

// The kind of Outlook decides. Where no x86 programs run, an installation for x86 fails at its registration;
// an installer that was made without x86 refuses it.
class OutlookOfKindX86 : public SetupFixture
{
protected:
    static void ExpectX86IsChosen()
    {
        const DWORD code = installer::Run(L"/ALLUSERS");
        // The system's kind, x64, would just be done.
        if (code == installer::done)
            EXPECT_EQ(installer::EntryText(For::everyone, L"Architecture"), L"x86");
        else
            EXPECT_THAT(code, testing::AnyOf(installer::registrationFailed, installer::wrongUsage));
    }
    void TearDown() override { ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Office"); }
};

TEST_F(OutlookOfKindX86, IsKnownByItsBitness)
{
    SetRegistryText(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Office\\16.0\\Outlook", L"Bitness", L"x86");

    ExpectX86IsChosen();
}

TEST_F(OutlookOfKindX86, IsKnownByTheInstalledPlatform)
{
    SetRegistryText(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Office\\ClickToRun\\Configuration",
                    L"Platform", L"x86");

    ExpectX86IsChosen();
}
}    // namespace
