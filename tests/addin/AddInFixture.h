#pragma once

#include "addin/DuplicateRemover.h"
#include "addin/TalmoreQuorvexOutlookDuplicateRemoverApp.h"
#include "localmapi/TextConversion.h"
#include "tests/addin/FakeOffice.h"
#include "tests/localmapi/Sandbox.h"
#include "tests/localmapi/TemporaryStore.h"
#include "win/ComInitialization.h"
#include "win/ComModule.h"

#include <windows.h>

#include <wrl/client.h>

#include <gtest/gtest.h>

// The add-in's object in a host of the test's making, over a mail store of its own. Every test ends with
// nothing left of either.
class AddInFixture : public testing::Test
{
protected:
    AddInFixture() { EXPECT_EQ(Create(addIn.ReleaseAndGetAddressOf()), S_OK); }

    void TearDown() override
    {
        addIn.Reset();
        office.Quit();
        EXPECT_EQ(office.log.liveObjects, 0);
        EXPECT_EQ(ComModule::GetLockCount(), 0);
        // A connection that failed leaves the helper to the next one.
        StopMapiHelper(TheApp().mapiHelper);
        TheApp().exchangeProfile = FALSE;
    }

    static HRESULT Create(_IDTExtensibility2** created)
    {
        return CDuplicateRemover::CreateInstance(nullptr, IID__IDTExtensibility2,
                                                 reinterpret_cast<void**>(created));
    }
    HRESULT Connect()
    {
        return addIn->OnConnection(office.application.Get(), ext_cm_Startup, nullptr, nullptr);
    }
    HRESULT Disconnect() { return addIn->OnDisconnection(ext_dm_UserClosed, nullptr); }

    static bool HelperRuns() { return TheApp().mapiHelper.mapiSession != nullptr; }

    TemporaryStore file;
    StoreVariable variable{WideFromUtf8(file.Path()).c_str()};
    ComInitialization com;
    FakeOffice office;
    Microsoft::WRL::ComPtr<_IDTExtensibility2> addIn;
};
