// Each call of the host made to fail in its turn.
#include "addin/DuplicateRemover.h"

#include "tests/addin/AddInFixture.h"
#include "win/Variant.h"

#include <windows.h>

#include <comutil.h>
#include <oleauto.h>

#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace
{
std::wstring TakeErrorText()
{
    ComPtr<IErrorInfo> info;
    if (::GetErrorInfo(0, info.ReleaseAndGetAddressOf()) != S_OK)
        return {};
    BSTR text = nullptr;
    info->GetDescription(&text);
    return TextOf(_bstr_t(text, false));
}

bool GivesAnObject(const std::string& line)
{
    return line.find(" put ") == std::string::npos && line.find("PasteFace") == std::string::npos &&
           line.find("Advise()") == std::string::npos;
}

class FailingConnection : public AddInFixture
{
protected:
    FailingConnection()
    {
        EXPECT_EQ(Connect(), S_OK);
        calls = office.log.lines;
        Disconnect();
        addIn.Reset();
    }

    struct Outcome
    {
        HRESULT result;
        std::wstring text;
        bool tookBack;    // whether a disconnection after it had anything to do
    };
    // Connects a fresh object to a fresh host whose call number `failAt` (from 1) goes wrong, and lets go of
    // both.
    Outcome ConnectWith(std::size_t failAt, OfficeLog::Failure failure, bool throws = false)
    {
        FakeOffice host;
        host.log.failAt = failAt;
        host.log.failure = failure;
        host.log.throws = throws;
        ComPtr<_IDTExtensibility2> object;
        EXPECT_EQ(Create(object.ReleaseAndGetAddressOf()), S_OK);

        Outcome outcome{};
        ::SetErrorInfo(0, nullptr);
        outcome.result = object->OnConnection(host.application.Get(), ext_cm_Startup, nullptr, nullptr);
        outcome.text = TakeErrorText();
        const std::size_t callsBefore = host.log.lines.size();
        EXPECT_EQ(object->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
        outcome.tookBack = host.log.lines.size() != callsBefore;
        object.Reset();
        host.Quit();
        EXPECT_EQ(host.log.liveObjects, 0);
        EXPECT_EQ(ComModule::GetLockCount(), 0);
        return outcome;
    }

    // What the call's own failure is to come to: a host that names no explorer has none.
    HRESULT Expected(std::size_t call) const
    {
        return calls.at(call - 1) == "Application ActiveExplorer()" ? static_cast<HRESULT>(0xFFFFFFFF)
                                                                    : OfficeLog::plannedCode;
    }

    std::vector<std::string> calls;    // those of a connection that succeeds
};

TEST_F(FailingConnection, EndsWithTheCodeOfTheFailingCall)
{
    for (std::size_t call = 1; call <= calls.size(); ++call)
    {
        SCOPED_TRACE(calls[call - 1]);

        const Outcome outcome = ConnectWith(call, OfficeLog::Failure::plain);

        EXPECT_EQ(outcome.result, Expected(call));
        EXPECT_FALSE(outcome.tookBack);
    }
}

TEST_F(FailingConnection, LeavesTheMapiHelperRunning)
{
    for (std::size_t call = 1; call <= calls.size(); ++call)
    {
        SCOPED_TRACE(calls[call - 1]);

        ConnectWith(call, OfficeLog::Failure::plain);

        EXPECT_TRUE(HelperRuns());
    }
}

TEST_F(FailingConnection, HandsOnWhatTheHostSays)
{
    for (std::size_t call = 3; call <= calls.size(); ++call)
    {
        SCOPED_TRACE(calls[call - 1]);

        const Outcome outcome = ConnectWith(call, OfficeLog::Failure::withInfo);

        EXPECT_EQ(outcome.result, OfficeLog::plannedCode);
        EXPECT_EQ(outcome.text, OfficeLog::plannedText);
    }
}

TEST_F(FailingConnection, FailsWhereAnObjectIsMissing)
{
    for (std::size_t call = 2; call <= calls.size(); ++call)
    {
        SCOPED_TRACE(calls[call - 1]);
        if (!GivesAnObject(calls[call - 1]))
            continue;

        const Outcome outcome = ConnectWith(call, OfficeLog::Failure::withoutObject);

        EXPECT_TRUE(FAILED(outcome.result)) << outcome.result;
        EXPECT_FALSE(outcome.tookBack);
    }
}

TEST_F(FailingConnection, LetsNoExceptionIntoTheHost)
{
    for (std::size_t call = 1; call <= calls.size(); ++call)
    {
        SCOPED_TRACE(calls[call - 1]);

        const Outcome outcome = ConnectWith(call, OfficeLog::Failure::plain, true);

        EXPECT_EQ(outcome.result, E_UNEXPECTED);
        EXPECT_FALSE(outcome.tookBack);
    }
}

// The one sink that was advised would else hold on to the module until the button goes.
TEST_F(FailingConnection, TakesTheFirstSinkBackWhenTheSecondIsRefused)
{
    office.log.failAt = office.log.lines.size() + calls.size();
    ASSERT_EQ(Create(addIn.ReleaseAndGetAddressOf()), S_OK);

    EXPECT_EQ(Connect(), OfficeLog::plannedCode);

    EXPECT_EQ(office.log.lines.back(), "ToolBarButton Unadvise()");
    EXPECT_TRUE(office.ToolBarButton().events->sinks.empty());
}

TEST_F(FailingConnection, CanBeFollowedByOneThatSucceeds)
{
    office.log.failAt = office.log.lines.size() + calls.size();
    ASSERT_EQ(Create(addIn.ReleaseAndGetAddressOf()), S_OK);
    Connect();

    EXPECT_EQ(Connect(), S_OK);
    EXPECT_EQ(Disconnect(), S_OK);
}
}    // namespace
