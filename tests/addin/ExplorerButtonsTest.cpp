#include "addin/ExplorerButtons.h"

#include "tests/addin/ClipboardHolder.h"
#include "tests/addin/FakeOffice.h"

#include <windows.h>

#include <comdef.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;
using Lines = std::vector<std::string>;

namespace
{
class ExplorerButtons : public testing::Test
{
protected:
    ComPtr<_CommandBars> Bars() const
    {
        return ComPtr<_CommandBars>(office.application->explorer->bars.Get());
    }

    // What `action` throws, as its code; S_OK when it throws nothing.
    static HRESULT CodeOf(const std::function<void()>& action)
    {
        try
        {
            action();
            return S_OK;
        }
        catch (const _com_error& failure)
        {
            return failure.Error();
        }
    }

    FakeOffice office;
};

TEST_F(ExplorerButtons, MakeAToolBarWithOneButtonInThisOrder)
{
    const ComPtr<_CommandBarButton> button = AddToolBarButton(Bars());

    EXPECT_EQ(
        office.log.lines,
        (Lines{"CommandBars Add(BSTR TalmoreQuorvexOutlookDuplicateRemover, I4 1, missing, I2 -1)",
               "ToolBar get Controls()", "ToolBarControls Add(I4 1, missing, missing, missing, I2 -1)",
               "ToolBarButton put Style(3)", "ToolBarButton PasteFace()", "ToolBarButton put Visible(-1)",
               "ToolBarButton put Caption(Talmore Duplicate Remover)", "ToolBarButton put Enabled(-1)",
               "ToolBarButton put TooltipText(Talmore Duplicate Remover)",
               "ToolBarButton put Tag(Talmore Duplicate Remover)", "ToolBar put Visible(-1)"}));
    EXPECT_EQ(button.Get(), &office.ToolBarButton());
}

TEST_F(ExplorerButtons, MakeAButtonOnTheFifthMenuInThisOrder)
{
    const ComPtr<_CommandBarButton> button = AddMenuButton(Bars());

    EXPECT_EQ(office.log.lines,
              (Lines{"CommandBars get ActiveMenuBar()", "MenuBar get Controls()",
                     "MenuBarControls get Item(I4 5)", "Menu5 get Control()", "Menu5 get Controls()",
                     "Menu5Controls Add(I4 1, missing, missing, missing, I2 -1)",
                     "MenuButton put Caption(Talmore Quorvex Outlook Duplicate Remover)",
                     "MenuButton put Enabled(-1)", "MenuButton put Visible(-1)", "MenuButton put Style(3)",
                     "MenuButton PasteFace()", "MenuButton put Visible(-1)"}));
    EXPECT_EQ(button.Get(), &office.MenuButton());
}

TEST_F(ExplorerButtons, ShowTheSamePicture)
{
    AddToolBarButton(Bars());
    PutTextOnClipboard(L"copied in between");
    AddMenuButton(Bars());

    EXPECT_FALSE(office.ToolBarButton().face.empty());
    EXPECT_EQ(office.MenuButton().face, office.ToolBarButton().face);
}

TEST_F(ExplorerButtons, DoWithoutAPictureWhileAnotherHoldsTheClipboard)
{
    const ClipboardHolder holder;

    AddToolBarButton(Bars());
    AddMenuButton(Bars());

    EXPECT_EQ(office.log.CountOf("ToolBarButton PasteFace()"), 0u);
    EXPECT_EQ(office.log.CountOf("MenuButton PasteFace()"), 0u);
    EXPECT_EQ(office.log.lines.back(), "MenuButton put Visible(-1)");
}

TEST_F(ExplorerButtons, AreAddedToAMenuThatHoldsNothingYet)
{
    office.Menu(5).items.clear();

    EXPECT_EQ(CodeOf([this] { AddMenuButton(Bars()); }), S_OK);
}

TEST_F(ExplorerButtons, FailWhereThereAreNotFiveMenus)
{
    office.Menus().resize(4);

    EXPECT_EQ(CodeOf([this] { AddMenuButton(Bars()); }), E_INVALIDARG);
}

TEST_F(ExplorerButtons, FailWhereTheFifthMenuIsNone)
{
    office.ReplaceMenuByPlainControl(5);

    EXPECT_EQ(CodeOf([this] { AddMenuButton(Bars()); }), E_NOINTERFACE);
}

TEST_F(ExplorerButtons, FailWhereAnAddedControlIsNoButton)
{
    office.log.unknownInterfaces = {__uuidof(_CommandBarButton)};

    EXPECT_EQ(CodeOf([this] { AddToolBarButton(Bars()); }), E_NOINTERFACE);
    EXPECT_EQ(CodeOf([this] { AddMenuButton(Bars()); }), E_NOINTERFACE);
}

TEST_F(ExplorerButtons, HandOnWhatTheHostSaysOfItsFailure)
{
    office.log.failAt = 4;
    office.log.failure = OfficeLog::Failure::withInfo;

    try
    {
        AddToolBarButton(Bars());
        FAIL() << "nothing was thrown";
    }
    catch (const _com_error& failure)
    {
        EXPECT_EQ(failure.Error(), OfficeLog::plannedCode);
        EXPECT_STREQ(failure.Description(), OfficeLog::plannedText);
    }
}

// An error that stands from before is not the failing object's.
TEST_F(ExplorerButtons, HandOnNothingThatTheFailingObjectDoesNotVouchFor)
{
    OfficeLog stale;
    stale.failAt = 1;
    stale.failure = OfficeLog::Failure::withInfo;
    stale.Note("before");
    office.log.failAt = 1;

    try
    {
        AddToolBarButton(Bars());
        FAIL() << "nothing was thrown";
    }
    catch (const _com_error& failure)
    {
        EXPECT_EQ(failure.Error(), OfficeLog::plannedCode);
        EXPECT_EQ(failure.Description().length(), 0u);
    }
    ::SetErrorInfo(0, nullptr);
}
}    // namespace
