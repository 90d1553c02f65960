#include "addin/DuplicateRemover.h"

#include "tests/addin/AddInFixture.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

using Microsoft::WRL::ComPtr;

namespace
{
class AddInRounds : public AddInFixture
{
};

TEST_F(AddInRounds, LeaveNothingBehindAfterAThousand)
{
    const auto round = [this]
    {
        FakeOffice host;
        ComPtr<_IDTExtensibility2> object;
        ASSERT_EQ(Create(object.ReleaseAndGetAddressOf()), S_OK);
        ASSERT_EQ(object->OnConnection(host.application.Get(), ext_cm_Startup, nullptr, nullptr), S_OK);
        ASSERT_EQ(object->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
        object.Reset();
        host.Quit();
        ASSERT_EQ(host.log.liveObjects, 0);
    };
    const auto countHandles = []
    {
        DWORD count = 0;
        GetProcessHandleCount(GetCurrentProcess(), &count);
        return count;
    };
    round();
    const HandleCounts objectsBefore = HandleCounts::Now();
    const DWORD handlesBefore = countHandles();
    const long locksBefore = ComModule::GetLockCount();

    for (int i = 0; i < 1000 && !HasFatalFailure(); ++i)
        round();

    EXPECT_LE(HandleCounts::Now(), objectsBefore.WithSlackFor(1000));
    EXPECT_EQ(countHandles(), handlesBefore);
    EXPECT_EQ(ComModule::GetLockCount(), locksBefore);
}
}    // namespace
