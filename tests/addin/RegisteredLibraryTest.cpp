// What the registration is for: COM finds the class, the type library and the proxy.
#include "tests/addin/RegistrationFixture.h"
#include "win/ComInitialization.h"

#include <windows.h>

#include <comutil.h>
#include <objbase.h>
#include <objidl.h>
#include <wrl/client.h>

#include <tuple>

using Microsoft::WRL::ComPtr;

namespace
{
// Runs a program of the system and gives back its exit code.
DWORD RunProgram(std::wstring commandLine)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process))
        return ~0u;
    ::WaitForSingleObject(process.hProcess, 60'000);
    DWORD code = ~0u;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return code;
}

class RegisteredLibrary : public RegistrationFixture
{
protected:
    ComPtr<IDispatch> Activate(const wchar_t* programId) const
    {
        CLSID classId = CLSID_NULL;
        ComPtr<IDispatch> object;
        if (SUCCEEDED(::CLSIDFromProgID(programId, &classId)))
            ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(object.GetAddressOf()));
        return object;
    }

    const ComInitialization com;
};

TEST_F(RegisteredLibrary, IsActivatedByEitherProgramId)
{
    library.Register();

    EXPECT_TRUE(Activate(L"TalmoreQuorvexOutlookDuplicate.Duplicat"));
    EXPECT_TRUE(Activate(L"TalmoreQuorvexOutlookDuplicate.Duplic.1"));
}

TEST_F(RegisteredLibrary, MayBeUnloadedOnceItsObjectsAreGone)
{
    library.Register();
    EXPECT_EQ(library.CanUnloadNow(), S_OK);

    ComPtr<IDispatch> object = Activate(L"TalmoreQuorvexOutlookDuplicate.Duplicat");
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);

    object.Reset();
    ::CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(RegisteredLibrary, HasItsTypeLibraryFound)
{
    library.Register();

    ComPtr<ITypeLib> types;
    EXPECT_EQ(::LoadRegTypeLib(duplicateRemoverLibrary, 1, 0, LOCALE_NEUTRAL, types.GetAddressOf()), S_OK);

    ASSERT_TRUE(types);
    _bstr_t name;
    _bstr_t help;
    types->GetDocumentation(-1, name.GetAddress(), help.GetAddress(), nullptr, nullptr);
    EXPECT_STREQ(name, L"TalmoreQuorvexOutlookDuplicateRemoverLib");
    EXPECT_STREQ(help, L"TalmoreQuorvexOutlookDuplicateRemover 1.0 Type Library");
}

TEST_F(RegisteredLibrary, DescribesItsClassAndInterface)
{
    ComPtr<ITypeLib> types;
    ::LoadTypeLibEx(library.Path().c_str(), REGKIND_NONE, types.GetAddressOf());
    ASSERT_TRUE(types);

    for (const auto& [id, name, help] :
         {std::tuple(duplicateRemoverClass, L"DuplicateRemover", L"DuplicateRemover Class"),
          std::tuple(duplicateRemoverInterface, L"IDuplicateRemover", L"IDuplicateRemover Interface")})
    {
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(types->GetTypeInfoOfGuid(id, info.GetAddressOf()), S_OK);
        _bstr_t itsName;
        _bstr_t itsHelp;
        info->GetDocumentation(MEMBERID_NIL, itsName.GetAddress(), itsHelp.GetAddress(), nullptr, nullptr);
        EXPECT_STREQ(itsName, name);
        EXPECT_STREQ(itsHelp, help);
    }
}

TEST_F(RegisteredLibrary, GivesOutTheProxyOfItsInterface)
{
    ComPtr<IPSFactoryBuffer> proxies;

    EXPECT_EQ(library.GetClassObject(duplicateRemoverInterface, IID_IPSFactoryBuffer,
                                     reinterpret_cast<void**>(proxies.GetAddressOf())),
              S_OK);

    EXPECT_EQ(library.CanUnloadNow(), S_FALSE) << "the proxy is in use";
    proxies.Reset();
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(RegisteredLibrary, HasOneClassObject)
{
    ComPtr<IClassFactory> first;
    ComPtr<IClassFactory> second;

    library.GetClassObject(duplicateRemoverClass, IID_IClassFactory,
                           reinterpret_cast<void**>(first.GetAddressOf()));
    library.GetClassObject(duplicateRemoverClass, IID_IClassFactory,
                           reinterpret_cast<void**>(second.GetAddressOf()));

    EXPECT_TRUE(first);
    EXPECT_EQ(first, second);
}

TEST_F(RegisteredLibrary, HasNoOtherClasses)
{
    void* object = &object;

    EXPECT_EQ(library.GetClassObject(CLSID_NULL, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(library.GetClassObject(duplicateRemoverClass, IID_IClassFactory, nullptr), E_POINTER);
}

TEST_F(RegisteredLibrary, IsRegisteredByTheSystemsProgram)
{
    const std::wstring file = L" \"" + library.Path() + L"\"";

    EXPECT_EQ(RunProgram(L"regsvr32.exe /s" + file), 0u);
    EXPECT_TRUE(IsForMachine(Added()));
    EXPECT_EQ(RunProgram(L"regsvr32.exe /s /u" + file), 0u);
    EXPECT_FALSE(IsForMachine(Added()));

    EXPECT_EQ(RunProgram(L"regsvr32.exe /s /n /i:user" + file), 0u);
    EXPECT_TRUE(IsForUser(Added()));
    EXPECT_EQ(RunProgram(L"regsvr32.exe /s /u /n /i:user" + file), 0u);
    EXPECT_FALSE(IsForUser(Added()));
}
}    // namespace
