// The library's self-registration: what it writes, and that it all goes again.
#include "tests/addin/RegistrationFixture.h"

#include <set>

namespace
{
using Entries = RegistrySnapshot::Entries;

// All that registration writes, with the classes below `classes`.
Entries Expected(const std::wstring& classes, const LoadedLibrary& library)
{
    const std::wstring object = classes + L"\\clsid\\{2e1ce4e6-8591-4c0a-a3c2-46a0d2c1e371}";
    const std::wstring application = classes + L"\\appid\\";
    const std::wstring version = classes + L"\\talmorequorvexoutlookduplicate.duplic.1";
    const std::wstring program = classes + L"\\talmorequorvexoutlookduplicate.duplicat";
    const std::wstring proxy = classes + L"\\clsid\\{a3869348-5cfe-4b76-8804-8ec700cc9935}";
    const std::wstring contract = classes + L"\\interface\\{a3869348-5cfe-4b76-8804-8ec700cc9935}";
    const std::wstring types = classes + L"\\typelib\\{fb9e5801-82cc-4476-b5d0-87a629368043}";
    const std::wstring file = types + (sizeof(void*) == 8 ? L"\\1.0\\0\\win64" : L"\\1.0\\0\\win32");
    const std::wstring addin =
        L"hkcu\\software\\microsoft\\office\\outlook\\addins\\talmorequorvexoutlookduplicate.duplicat";
    const std::wstring classId = L"{2E1CE4E6-8591-4C0A-A3C2-46A0D2C1E371}";
    const std::wstring applicationId = L"{12DF1D42-4073-431E-B3F3-63AB8BDB08E0}";
    const std::wstring libraryId = L"{FB9E5801-82CC-4476-B5D0-87A629368043}";
    return {
        {application + L"{12df1d42-4073-431e-b3f3-63ab8bdb08e0}", L""},
        {application + L"{12df1d42-4073-431e-b3f3-63ab8bdb08e0}|", L"TalmoreQuorvexOutlookDuplicateRemover"},
        {application + L"talmorequorvexoutlookduplicateremover.dll", L""},
        {application + L"talmorequorvexoutlookduplicateremover.dll|AppID", applicationId},
        {version, L""},
        {version + L"|", L"DuplicateRemover Class"},
        {version + L"\\clsid", L""},
        {version + L"\\clsid|", classId},
        {program, L""},
        {program + L"|", L"DuplicateRemover Class"},
        {program + L"\\clsid", L""},
        {program + L"\\clsid|", classId},
        {program + L"\\curver", L""},
        {program + L"\\curver|", L"TalmoreQuorvexOutlookDuplicate.Duplic.1"},
        {object, L""},
        {object + L"|", L"DuplicateRemover Class"},
        {object + L"\\progid", L""},
        {object + L"\\progid|", L"TalmoreQuorvexOutlookDuplicate.Duplic.1"},
        {object + L"\\versionindependentprogid", L""},
        {object + L"\\versionindependentprogid|", L"TalmoreQuorvexOutlookDuplicate.Duplicat"},
        {object + L"\\programmable", L""},
        {object + L"\\inprocserver32", L""},
        {object + L"\\inprocserver32|", library.Path()},
        {object + L"\\inprocserver32|ThreadingModel", L"Apartment"},
        {object + L"\\typelib", L""},
        {object + L"\\typelib|", libraryId},
        {addin, L""},
        {addin + L"|FriendlyName", L"TalmoreQuorvexOutlookDuplicateRemover"},
        {addin + L"|Description", L"Talmore Quorvex Outlook Duplicate Remover Addin"},
        {addin + L"|LoadBehavior", L"dword 3"},
        {addin + L"|CommandLineSafe", L"dword 0"},
        {types, L""},
        {types + L"\\1.0", L""},
        {types + L"\\1.0|", L"TalmoreQuorvexOutlookDuplicateRemover 1.0 Type Library"},
        {types + L"\\1.0\\0", L""},
        {file, L""},
        {file + L"|", library.Path()},
        {types + L"\\1.0\\flags", L""},
        {types + L"\\1.0\\helpdir", L""},
        {contract, L""},
        {contract + L"|", L"IDuplicateRemover"},
        {contract + L"\\proxystubclsid32", L""},
        {contract + L"\\proxystubclsid32|", L"{A3869348-5CFE-4B76-8804-8EC700CC9935}"},
        {contract + L"\\typelib", L""},
        {contract + L"\\typelib|", libraryId},
        {contract + L"\\typelib|Version", L"1.0"},
        {proxy, L""},
        {proxy + L"|", L"PSFactoryBuffer"},
        {proxy + L"\\inprocserver32", L""},
        {proxy + L"\\inprocserver32|", library.Path()},
        {proxy + L"\\inprocserver32|ThreadingModel", L"Both"},
    };
}

// Keys that stay once they are there: others have theirs below them.
const std::set<std::wstring>& Roots()
{
    static const std::set<std::wstring> roots = {
        L"hkcu\\software\\classes",
        L"hkcu\\software\\classes\\appid",
        L"hkcu\\software\\classes\\clsid",
        L"hkcu\\software\\classes\\interface",
        L"hkcu\\software\\classes\\typelib",
        L"hkcu\\software\\microsoft",
        L"hkcu\\software\\microsoft\\office",
        L"hkcu\\software\\microsoft\\office\\outlook",
        L"hkcu\\software\\microsoft\\office\\outlook\\addins",
    };
    return roots;
}

// What the system adds on its own to a type library's registration.
bool IsTheSystems(const std::wstring& path)
{
    return path.find(L"\\nummethods") != path.npos || path.ends_with(L"\\proxystubclsid") ||
           path.ends_with(L"\\proxystubclsid|") || path.ends_with(L"\\flags|") ||
           path.ends_with(L"\\helpdir|");
}

// What a test asks about: neither the roots nor the system's own additions.
Entries Own(Entries entries)
{
    std::erase_if(entries, [](const auto& entry)
                  { return Roots().contains(entry.first) || IsTheSystems(entry.first); });
    return entries;
}

class Registration : public RegistrationFixture
{
};

TEST_F(Registration, OfTheMachineIsLetterForLetter)
{
    EXPECT_EQ(library.Register(), S_OK);

    EXPECT_EQ(Own(Added()), Expected(L"hklm\\software\\classes", library));
    EXPECT_EQ(Removed(), Entries());
}

TEST_F(Registration, OfTheUserIsLetterForLetter)
{
    EXPECT_EQ(library.Install(true, L"user"), S_OK);

    EXPECT_EQ(Own(Added()), Expected(L"hkcu\\software\\classes", library));
    EXPECT_EQ(Removed(), Entries());
}

TEST_F(Registration, OfTheMachineIsTakenBackWhole)
{
    library.Register();

    EXPECT_EQ(library.Unregister(), S_OK);

    EXPECT_EQ(Own(Added()), Entries());
    EXPECT_EQ(Removed(), Entries());
}

TEST_F(Registration, OfTheUserIsTakenBackWhole)
{
    library.Install(true, L"user");

    EXPECT_EQ(library.Install(false, L"user"), S_OK);

    EXPECT_EQ(Own(Added()), Entries());
    EXPECT_EQ(Removed(), Entries());
}

TEST_F(Registration, CanBeRepeated)
{
    library.Register();

    EXPECT_EQ(library.Register(), S_OK);

    EXPECT_EQ(Own(Added()), Expected(L"hklm\\software\\classes", library));
}

TEST_F(Registration, IsForTheUserByThatWordInAnyCase)
{
    EXPECT_EQ(library.Install(true, L"USER"), S_OK);

    EXPECT_TRUE(IsForUser(Added()));
}

TEST_F(Registration, IsForTheMachineByAnyOtherWord)
{
    for (const wchar_t* word : {L"user2", L"users", L"use", L" user", L""})
    {
        EXPECT_EQ(library.Install(true, word), S_OK);
        EXPECT_TRUE(IsForMachine(Added()));
        library.Install(false, word);
    }
}

TEST_F(Registration, IsForTheMachineWithoutACommandLine)
{
    EXPECT_EQ(library.Install(true, nullptr), S_OK);

    const Entries added = Added();
    EXPECT_TRUE(IsForMachine(added));
    EXPECT_TRUE(added.contains(UserAddinKey())) << "the host looks for add-ins of the user only";
}

TEST_F(Registration, StaysTheUsersForTheRestOfTheProcess)
{
    library.Install(true, L"user");

    EXPECT_EQ(library.Unregister(), S_OK);
    EXPECT_EQ(Own(Added()), Entries());

    EXPECT_EQ(library.Register(), S_OK);
    EXPECT_TRUE(IsForUser(Added()));
}

TEST_F(Registration, LeavesTheRootsWhereOthersHaveTheirs)
{
    library.Register();
    library.Unregister();

    for (const wchar_t* root : {L"CLSID", L"AppID", L"Interface", L"TypeLib"})
    {
        HKEY key = nullptr;
        EXPECT_EQ(::RegOpenKeyExW(HKEY_CLASSES_ROOT, root, 0, KEY_READ, &key), ERROR_SUCCESS);
        ::RegCloseKey(key);
    }
}

TEST_F(Registration, LeavesTheThreadsLocaleAlone)
{
    const LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
    const LCID own = ::GetThreadLocale();
    ::SetThreadLocale(german);

    library.Register();
    const LCID registered = ::GetThreadLocale();
    library.Unregister();
    const LCID unregistered = ::GetThreadLocale();
    ::SetThreadLocale(own);

    EXPECT_EQ(registered, german);
    EXPECT_EQ(unregistered, german);
}
}    // namespace
