// A click on either button, with the wizard used as a person would.
#include "addin/DuplicateRemover.h"

#include "res/resource.h"
#include "tests/addin/AddInFixture.h"
#include "tests/engine/FakeStore.h"
#include "tests/ui/ModalDriver.h"
#include "tests/ui/ServedSession.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
constexpr wchar_t title[] = L"Talmore Quorvex Outlook Duplicate Remover";

class Click : public AddInFixture
{
protected:
    Click() { store.root.AddFolder(L"Inbox").AddMessage(); }

    void SetUp() override { ASSERT_EQ(Connect(), S_OK); }
    void TearDown() override
    {
        const bool alive = addIn != nullptr;
        EXPECT_EQ(alive ? Disconnect() : S_OK, S_OK);
        AddInFixture::TearDown();
        EXPECT_EQ(store.log.liveObjects, 0);
    }

    static HWND WaitUntilLoaded(ModalDriver& user)
    {
        const HWND page = user.WaitForDialog(title, IDC_FOLDER_TREE);
        user.WaitUntil([page] { return ::IsWindowEnabled(::GetDlgItem(page, IDOK)) != FALSE; }, "the tree");
        return page;
    }

    // Clicks, and closes the wizard that comes.
    VARIANT_BOOL ClickOn(FakeButton& button, VARIANT_BOOL cancelDefault = VARIANT_FALSE)
    {
        ModalDriver user(
            [&](ModalDriver& self)
            {
                self.Click(WaitUntilLoaded(self), IDCANCEL);
                ++opened;
            });
        const VARIANT_BOOL cancelled = button.Click(cancelDefault);
        user.Join();
        return cancelled;
    }

    // Clicks, runs with the settings as they come, and closes the wizard behind the report.
    void RunFrom(FakeButton& button)
    {
        ModalDriver user(
            [&](ModalDriver& self)
            {
                self.PostClick(WaitUntilLoaded(self), IDOK);
                self.PostClick(self.WaitForDialog(title, IDC_TIME_SPAN), IDOK);
                const HWND report = self.WaitForDialog(title, IDC_REPORT);
                const HWND notice = self.WaitForDialog(title, IDC_MESSAGE_TEXT);
                self.Click(notice, IDOK);
                self.WaitForEnd(notice);
                self.WaitUntil([report]
                               { return ::IsWindowEnabled(::GetDlgItem(report, IDC_SAVE_LOG)) != FALSE; },
                               "the end of the run");
                self.Click(report, IDCANCEL);
            });
        button.Click();
        user.Join();
    }
    bool HasAskedForLongTermIds() const
    {
        return std::ranges::any_of(store.log.lines, [](const std::string& line)
                                   { return line.find("0x66700102") != std::string::npos; });
    }

    FakeStore store;
    ServedSession served{[this] { return store.MakeSession(); }};
    int opened = 0;
};

TEST_F(Click, OnEitherButtonOpensTheWizard)
{
    ClickOn(office.ToolBarButton());
    ClickOn(office.MenuButton());

    EXPECT_EQ(opened, 2);
}

TEST_F(Click, LeavesTheDefaultActionToTheHost)
{
    EXPECT_EQ(ClickOn(office.ToolBarButton(), VARIANT_FALSE), VARIANT_FALSE);
    EXPECT_EQ(ClickOn(office.ToolBarButton(), VARIANT_TRUE), VARIANT_TRUE);
}

TEST_F(Click, SearchesByTheIdsOfTheProfilesKind)
{
    RunFrom(office.MenuButton());
    const bool longTermWithoutExchange = HasAskedForLongTermIds();
    Disconnect();
    file.Run("UPDATE setting SET value = 'MSEMS' WHERE name = 'service_name'");
    Connect();

    RunFrom(office.MenuButton());

    EXPECT_FALSE(longTermWithoutExchange);
    EXPECT_TRUE(HasAskedForLongTermIds());
}

TEST_F(Click, MayBeFollowedByTheEndOfTheConnectionWhileTheWizardIsOpen)
{
    HRESULT disconnected = E_PENDING;
    ModalDriver user(
        [&](ModalDriver& self)
        {
            const HWND page = WaitUntilLoaded(self);
            ModalDriver::RunOnThreadOf(page,
                                       [&]
                                       {
                                           disconnected = Disconnect();
                                           addIn.Reset();
                                       });
            self.Click(page, IDCANCEL);
        });

    office.ToolBarButton().Click();
    user.Join();

    EXPECT_EQ(disconnected, S_OK);
}

TEST_F(Click, DoesNothingAfterTheObjectHasGone)
{
    // The host kept its sink, and no exception comes of it.
    const auto sinks = office.ToolBarButton().events->sinks;
    Disconnect();
    addIn.Reset();
    office.ToolBarButton().events->sinks = sinks;

    office.ToolBarButton().Click();

    EXPECT_EQ(ShownDialogs(), std::vector<HWND>{});
}

TEST_F(Click, TakesNoOtherEventForAClick)
{
    const auto sink = office.ToolBarButton().events->sinks.begin()->second;
    DISPPARAMS none{};

    const HRESULT result =
        sink->Invoke(2, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);

    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(ShownDialogs(), std::vector<HWND>{});
}
}    // namespace
