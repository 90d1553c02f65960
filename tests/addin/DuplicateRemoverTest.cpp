#include "addin/DuplicateRemover.h"

#include "tests/addin/AddInFixture.h"
#include "tests/addin/ClipboardHolder.h"
#include "tests/win/MemoryGone.h"

#include <windows.h>

#include <olectl.h>

#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;
using Lines = std::vector<std::string>;

namespace
{
constexpr HRESULT noExplorer = static_cast<HRESULT>(0xFFFFFFFF);

class DuplicateRemover : public AddInFixture
{
};

TEST_F(DuplicateRemover, CallsTheHostInThisOrderWhenItConnects)
{
    EXPECT_EQ(Connect(), S_OK);

    EXPECT_EQ(office.log.lines,
              (Lines{"Application ActiveExplorer()",
                     "Explorer get CommandBars()",
                     "CommandBars Add(BSTR TalmoreQuorvexOutlookDuplicateRemover, I4 1, missing, I2 -1)",
                     "ToolBar get Controls()",
                     "ToolBarControls Add(I4 1, missing, missing, missing, I2 -1)",
                     "ToolBarButton put Style(3)",
                     "ToolBarButton PasteFace()",
                     "ToolBarButton put Visible(-1)",
                     "ToolBarButton put Caption(Talmore Duplicate Remover)",
                     "ToolBarButton put Enabled(-1)",
                     "ToolBarButton put TooltipText(Talmore Duplicate Remover)",
                     "ToolBarButton put Tag(Talmore Duplicate Remover)",
                     "ToolBar put Visible(-1)",
                     "CommandBars get ActiveMenuBar()",
                     "MenuBar get Controls()",
                     "MenuBarControls get Item(I4 5)",
                     "Menu5 get Control()",
                     "Menu5 get Controls()",
                     "Menu5Controls Add(I4 1, missing, missing, missing, I2 -1)",
                     "MenuButton put Caption(Talmore Quorvex Outlook Duplicate Remover)",
                     "MenuButton put Enabled(-1)",
                     "MenuButton put Visible(-1)",
                     "MenuButton put Style(3)",
                     "MenuButton PasteFace()",
                     "MenuButton put Visible(-1)",
                     "ToolBarButton FindConnectionPoint()",
                     "ToolBarButton Advise()",
                     "MenuButton FindConnectionPoint()",
                     "MenuButton Advise()"}));
}

TEST_F(DuplicateRemover, StartsTheMapiHelperBeforeItCallsTheHost)
{
    bool ranAtFirstCall = false;
    office.log.onCall = [&](const std::string&)
    {
        if (office.log.lines.size() == 1)
            ranAtFirstCall = HelperRuns();
    };

    Connect();

    EXPECT_TRUE(ranAtFirstCall);
    EXPECT_TRUE(HelperRuns());
}

TEST_F(DuplicateRemover, ConnectsWithoutAProfileToLogOnTo)
{
    SetEnvironmentVariableW(L"LOCALMAPI_STORE", L"C:\\no such folder\\mail.db");

    EXPECT_EQ(Connect(), S_OK);
}

TEST_F(DuplicateRemover, NotesThatTheProfileUsesExchange)
{
    file.Run("UPDATE setting SET value = 'MSEMS' WHERE name = 'service_name'");

    Connect();

    EXPECT_EQ(TheApp().exchangeProfile, TRUE);
}

TEST_F(DuplicateRemover, LeavesItsPictureOnTheClipboard)
{
    PutTextOnClipboard(L"kept for later");

    Connect();

    EXPECT_FALSE(::IsClipboardFormatAvailable(CF_UNICODETEXT));
    EXPECT_FALSE(ReadClipboardBitmap().empty());
    EXPECT_EQ(ReadClipboardBitmap(), office.MenuButton().face);
}

TEST_F(DuplicateRemover, ConnectsWithoutPicturesWhileAnotherHoldsTheClipboard)
{
    const ClipboardHolder holder;

    EXPECT_EQ(Connect(), S_OK);

    EXPECT_EQ(office.ToolBarButton().events->sinks.size(), 1u);
    EXPECT_EQ(office.MenuButton().events->sinks.size(), 1u);
}

TEST_F(DuplicateRemover, KeepsTheHostAndItsButtonsUntilItGoes)
{
    Connect();
    Disconnect();
    office.Quit();
    const int keptAfterDisconnection = office.log.liveObjects;

    addIn.Reset();

    EXPECT_GT(keptAfterDisconnection, 0);
    EXPECT_EQ(office.log.liveObjects, 0);
}

TEST_F(DuplicateRemover, MakesNothingWithoutAnExplorerWindow)
{
    office.application->explorer.Reset();

    EXPECT_EQ(Connect(), noExplorer);

    EXPECT_EQ(office.log.lines, (Lines{"Application ActiveExplorer()"}));
    EXPECT_TRUE(HelperRuns());
}

TEST_F(DuplicateRemover, LeavesTheMapiHelperRunningAfterAConnectionThatFailed)
{
    office.application->explorer.Reset();
    Connect();

    EXPECT_EQ(Disconnect(), S_OK);

    EXPECT_TRUE(HelperRuns());
}

TEST_F(DuplicateRemover, NeedsAHost)
{
    EXPECT_EQ(addIn->OnConnection(nullptr, ext_cm_Startup, nullptr, nullptr), E_POINTER);

    EXPECT_TRUE(HelperRuns());
    EXPECT_EQ(Disconnect(), S_OK);
}

TEST_F(DuplicateRemover, NeedsAHostWithExplorers)
{
    EXPECT_EQ(addIn->OnConnection(office.application->explorer.Get(), ext_cm_Startup, nullptr, nullptr),
              E_NOINTERFACE);

    EXPECT_EQ(office.log.lines, Lines{});
}

TEST_F(DuplicateRemover, FailsWhereTheFifthMenuIsNone)
{
    office.ReplaceMenuByPlainControl(5);

    EXPECT_EQ(Connect(), E_NOINTERFACE);

    EXPECT_EQ(Disconnect(), S_OK);
    EXPECT_TRUE(HelperRuns());
}

TEST_F(DuplicateRemover, FailsWhereThereAreNotFiveMenus)
{
    office.Menus().resize(4);

    EXPECT_EQ(Connect(), E_INVALIDARG);
}

TEST_F(DuplicateRemover, ConnectsWhereTheFifthMenuIsEmpty)
{
    office.Menu(5).items.clear();

    EXPECT_EQ(Connect(), S_OK);
}

TEST_F(DuplicateRemover, FailsWhereButtonsRaiseNoEvents)
{
    office.log.unknownInterfaces = {IID_IConnectionPointContainer};

    EXPECT_EQ(Connect(), E_NOINTERFACE);

    EXPECT_EQ(Disconnect(), S_OK);
    EXPECT_TRUE(HelperRuns());
}

TEST_F(DuplicateRemover, SaysThatThereIsNoMemoryAndConnectsWhenThereIs)
{
    HRESULT result = S_OK;
    {
        const MemoryGone gone;
        result = Connect();
    }

    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_EQ(Connect(), S_OK);
}

TEST_F(DuplicateRemover, RefusesASecondConnectionWhileConnected)
{
    Connect();
    FakeButton& first = office.ToolBarButton();

    EXPECT_EQ(Connect(), E_FAIL);

    EXPECT_EQ(first.events->sinks.size(), 1u);
    EXPECT_EQ(office.ToolBarButton().events->sinks.size(), 0u);
}

TEST_F(DuplicateRemover, TakesBackBothSinksAndThenStopsTheMapiHelper)
{
    Connect();
    office.log.lines.clear();
    std::vector<bool> ran;
    office.log.onCall = [&](const std::string&) { ran.push_back(HelperRuns()); };

    EXPECT_EQ(Disconnect(), S_OK);

    EXPECT_EQ(office.log.lines, (Lines{"ToolBarButton FindConnectionPoint()", "ToolBarButton Unadvise()",
                                       "MenuButton FindConnectionPoint()", "MenuButton Unadvise()"}));
    EXPECT_EQ(ran, std::vector<bool>(4, true));
    EXPECT_FALSE(HelperRuns());
    EXPECT_TRUE(office.ToolBarButton().events->sinks.empty());
    EXPECT_TRUE(office.MenuButton().events->sinks.empty());
}

TEST_F(DuplicateRemover, DoesNothingAtASecondDisconnection)
{
    Connect();
    Disconnect();
    office.log.lines.clear();

    EXPECT_EQ(Disconnect(), S_OK);

    EXPECT_EQ(office.log.lines, Lines{});
}

TEST_F(DuplicateRemover, DoesNothingAtADisconnectionBeforeAnyConnection)
{
    EXPECT_EQ(Disconnect(), S_OK);
}

TEST_F(DuplicateRemover, ConnectsAgainAfterADisconnection)
{
    Connect();
    Disconnect();

    EXPECT_EQ(Connect(), S_OK);

    EXPECT_TRUE(HelperRuns());
    EXPECT_EQ(office.ToolBarButton().events->sinks.size(), 1u);
    Disconnect();
}

TEST_F(DuplicateRemover, StaysConnectedWhenTheToolBarButtonDoesNotLetGo)
{
    Connect();
    office.log.failAt = office.log.lines.size() + 2;

    EXPECT_EQ(Disconnect(), OfficeLog::plannedCode);

    EXPECT_TRUE(HelperRuns());
    EXPECT_EQ(office.log.lines.back(), "ToolBarButton Unadvise()");
    EXPECT_EQ(office.MenuButton().events->sinks.size(), 1u);
    // Its cookie is gone, so the next attempt fails as well, but it is made.
    EXPECT_EQ(Disconnect(), CONNECT_E_NOCONNECTION);
}

TEST_F(DuplicateRemover, StaysConnectedWhenTheMenuButtonDoesNotLetGo)
{
    Connect();
    office.log.failAt = office.log.lines.size() + 4;

    EXPECT_EQ(Disconnect(), OfficeLog::plannedCode);

    EXPECT_TRUE(HelperRuns());
    EXPECT_TRUE(office.ToolBarButton().events->sinks.empty());
}

TEST_F(DuplicateRemover, HasNoUseForTheOtherNotices)
{
    EXPECT_EQ(addIn->OnAddInsUpdate(nullptr), E_NOTIMPL);
    EXPECT_EQ(addIn->OnStartupComplete(nullptr), E_NOTIMPL);
    EXPECT_EQ(addIn->OnBeginShutdown(nullptr), E_NOTIMPL);
}
}    // namespace
