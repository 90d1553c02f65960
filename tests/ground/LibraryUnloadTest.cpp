// What the delivered libraries leave in a process that loads, uses and unloads them.
#include "tests/win/ThreadSlots.h"
#include "win/ModuleHandle.h"

#include <windows.h>

#include <mapix.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{
template <typename Function>
Function Find(const ModuleHandle& library, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(::GetProcAddress(library.get(), name)));
}

void AskForAClass(const ModuleHandle& library)
{
    void* object = nullptr;
    Find<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(library, "DllGetClassObject")(
        GUID_NULL, IID_IClassFactory, &object);
}

void LogOn(const ModuleHandle& library)
{
    Find<LPMAPIINITIALIZE>(library, "MAPIInitialize")(nullptr);
    IMAPISession* session = nullptr;
    Find<LPMAPILOGONEX>(library, "MAPILogonEx")(0, nullptr, nullptr, MAPI_EXTENDED | MAPI_USE_DEFAULT,
                                                &session);
    if (session)
        session->Release();
    Find<LPMAPIUNINITIALIZE>(library, "MAPIUninitialize")();
}

struct Library
{
    const char* name;
    void (*use)(const ModuleHandle&);
};

class UnloadedLibrary : public testing::TestWithParam<Library>
{
protected:
    static void LoadUseAndUnload()
    {
        const char* dist = std::getenv("TQODR_DIST");
        const std::string path = std::string("Z:") + (dist ? dist : ".") + '/' + GetParam().name + ".dll";
        const ModuleHandle library(::LoadLibraryA(path.c_str()));
        ASSERT_TRUE(library) << path;
        GetParam().use(library);
    }
};

TEST_P(UnloadedLibrary, GivesItsThreadSlotsBack)
{
    LoadUseAndUnload();    // the system's own libraries, which come along, stay
    const std::size_t before = CountFreeThreadSlots();

    for (int round = 0; round < 5 && !HasFatalFailure(); ++round)
        LoadUseAndUnload();

    EXPECT_EQ(CountFreeThreadSlots(), before);
}

TEST_P(UnloadedLibrary, ComesBackMoreOftenThanThereAreThreadSlots)
{
    constexpr std::size_t enoughForOneRound = 10;
    LoadUseAndUnload();
    ThreadSlots slots;
    slots.TakeAll();
    slots.GiveBack(enoughForOneRound);

    for (std::size_t round = 0; round < 2 * enoughForOneRound && !HasFatalFailure(); ++round)
        LoadUseAndUnload();

    EXPECT_EQ(CountFreeThreadSlots(), enoughForOneRound);
}

INSTANTIATE_TEST_SUITE_P(Delivered, UnloadedLibrary,
                         testing::Values(Library{"LocalMapi", &LogOn}, Library{"QuorvexDll", &AskForAClass},
                                         Library{"TalmoreQuorvexOutlookDuplicateRemover", &AskForAClass}),
                         [](const auto& one) { return std::string(one.param.name); });
}    // namespace
