// Registration that fails half-way.
#include "tests/addin/RegistrationFixture.h"

namespace
{
// A key below which only passing keys can be made: a lasting one is refused.
class RefusingKey
{
public:
    RefusingKey(HKEY root, const std::wstring& path) : root(root), path(path)
    {
        DWORD disposition = 0;
        HKEY key = nullptr;
        ::RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key,
                          &disposition);
        made = disposition == REG_CREATED_NEW_KEY;
        if (key)
            ::RegCloseKey(key);
    }
    RefusingKey(const RefusingKey&) = delete;
    RefusingKey& operator=(const RefusingKey&) = delete;
    ~RefusingKey() { Remove(); }

    void Remove()
    {
        if (made)
            ::RegDeleteTreeW(root, path.c_str());
        made = false;
    }

    bool made;

private:
    const HKEY root;
    const std::wstring path;
};

constexpr wchar_t officeKey[] = L"Software\\Microsoft\\Office";
constexpr wchar_t typeLibraryKey[] = L"Software\\Classes\\TypeLib\\{FB9E5801-82CC-4476-B5D0-87A629368043}";

class FailingRegistration : public RegistrationFixture
{
protected:
    FailingRegistration()
    {
        // The roots of an earlier registration would be lasting ones.
        for (const wchar_t* root : {L"\\Outlook\\Addins", L"\\Outlook", L""})
            ::RegDeleteKeyW(HKEY_CURRENT_USER, (std::wstring(officeKey) + root).c_str());
    }

    ~FailingRegistration() override
    {
        // Of a type library that it has not registered whole, the system takes back nothing.
        library.Register();
        library.Unregister();
    }

    // Whether nothing is left that the scripts wrote.
    static bool IsClean(const RegistrySnapshot::Entries& added)
    {
        for (const auto& [path, data] : added)
            if (path.find(L"talmorequorvex") != path.npos || path.find(L"2e1ce4e6") != path.npos ||
                path.find(L"12df1d42") != path.npos)
                return false;
        return true;
    }
};

TEST_F(FailingRegistration, IsUndoneWhenTheAddInKeyCannotBeWritten)
{
    const RefusingKey refusing(HKEY_CURRENT_USER, officeKey);
    ASSERT_TRUE(refusing.made);

    EXPECT_TRUE(FAILED(library.Install(true, nullptr)));

    EXPECT_TRUE(IsClean(Added()));
    EXPECT_TRUE(Removed().empty());
}

TEST_F(FailingRegistration, OfTheUserIsUndoneWhenTheAddInKeyCannotBeWritten)
{
    const RefusingKey refusing(HKEY_CURRENT_USER, officeKey);
    ASSERT_TRUE(refusing.made);

    EXPECT_TRUE(FAILED(library.Install(true, L"user")));

    EXPECT_TRUE(IsClean(Added()));
    EXPECT_TRUE(Removed().empty());
}

TEST_F(FailingRegistration, IsUndoneWhenTheTypeLibraryIsRefused)
{
    const RefusingKey refusing(HKEY_LOCAL_MACHINE, typeLibraryKey);
    ASSERT_TRUE(refusing.made);

    EXPECT_TRUE(FAILED(library.Install(true, nullptr)));

    EXPECT_TRUE(IsClean(Added()));
}

TEST_F(FailingRegistration, IsNotUndoneByPlainRegistration)
{
    const RefusingKey refusing(HKEY_LOCAL_MACHINE, typeLibraryKey);
    ASSERT_TRUE(refusing.made);

    EXPECT_TRUE(FAILED(library.Register()));

    EXPECT_TRUE(IsForMachine(Added()));
}

TEST_F(FailingRegistration, LeavesTheThreadsLocaleAlone)
{
    const RefusingKey refusing(HKEY_CURRENT_USER, officeKey);
    const LCID own = ::GetThreadLocale();
    ::SetThreadLocale(MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT));
    const LCID german = ::GetThreadLocale();

    library.Register();
    const LCID afterwards = ::GetThreadLocale();
    ::SetThreadLocale(own);

    EXPECT_EQ(afterwards, german);
}
}    // namespace
