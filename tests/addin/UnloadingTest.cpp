// The delivered library while a host lets go of it.
#include "addin/TalmoreQuorvexOutlookDuplicateRemover.h"
#include "contracts/Extensibility.h"
#include "localmapi/TextConversion.h"
#include "tests/addin/FakeOffice.h"
#include "tests/addin/LoadedLibrary.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"
#include "win/ComInitialization.h"

#include <windows.h>

#include <wrl/client.h>

#include <gtest/gtest.h>

using Microsoft::WRL::ComPtr;

namespace
{
class Unloading : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(library);
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(library.GetClassObject(CLSID_DuplicateRemover, IID_IClassFactory,
                                         reinterpret_cast<void**>(factory.ReleaseAndGetAddressOf())),
                  S_OK);
        ASSERT_EQ(factory->CreateInstance(nullptr, IID__IDTExtensibility2,
                                          reinterpret_cast<void**>(addIn.ReleaseAndGetAddressOf())),
                  S_OK);
    }

    HRESULT Connect()
    {
        return addIn->OnConnection(office.application.Get(), ext_cm_Startup, nullptr, nullptr);
    }
    HRESULT Disconnect() { return addIn->OnDisconnection(ext_dm_HostShutdown, nullptr); }
    static bool MapiIsLoaded() { return ::GetModuleHandleW(L"mapi32.dll") != nullptr; }

    TemporaryStore file;
    StoreVariable variable{WideFromUtf8(file.Path()).c_str()};
    ComInitialization com;
    LoadedLibrary library;
    FakeOffice office;
    ComPtr<_IDTExtensibility2> addIn;
};

TEST_F(Unloading, WaitsForTheObject)
{
    Connect();
    Disconnect();
    const HRESULT withObject = library.CanUnloadNow();

    addIn.Reset();

    EXPECT_EQ(withObject, S_FALSE);
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(Unloading, TakesTheMapiHelperOfAFailedConnectionAlong)
{
    office.application->explorer.Reset();
    ASSERT_TRUE(FAILED(Connect()));
    ASSERT_EQ(Disconnect(), S_OK);
    addIn.Reset();
    const bool loadedBefore = MapiIsLoaded();

    EXPECT_EQ(library.CanUnloadNow(), S_OK);

    EXPECT_TRUE(loadedBefore);
    EXPECT_FALSE(MapiIsLoaded());
}

TEST_F(Unloading, LeavesTheMapiHelperOfALiveConnectionAlone)
{
    Connect();

    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);

    EXPECT_TRUE(MapiIsLoaded());
    Disconnect();
    addIn.Reset();
}
}    // namespace
