#include "tests/ui/SelectFolderDlgFixture.h"

#include "tests/ui/DialogProbe.h"
#include "tests/win/HandleCounts.h"

#include <windows.h>

#include <commctrl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const COLORREF lightYellow = RGB(255, 245, 196);
const COLORREF blue = RGB(0, 0, 255);
const COLORREF white = RGB(255, 255, 255);

// Lets a tree do what some versions of the control do: pass the selection on as it is taken down.
class SelectionPassedOn
{
public:
    explicit SelectionPassedOn(HWND tree)
    {
        own = reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(
            tree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&SelectionPassedOn::Procedure)));
    }

private:
    static LRESULT CALLBACK Procedure(HWND tree, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_DESTROY)
        {
            const LRESULT root = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
            ::SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, root);
        }
        return ::CallWindowProcW(own, tree, message, wParam, lParam);
    }

    static inline WNDPROC own = nullptr;
};

class SelectFolder : public DestinationPicker
{
protected:
    SelectFolder()
    {
        FakeFolder& root = AddStore(L"Mailbox");
        inbox = &AddFolder(root, L"Inbox");
        AddFolder(root, L"Calendar", 1);
        AddFolder(*inbox, L"Archive");
    }

    IDispatch* FolderNamed(const std::wstring& name) const
    {
        const auto found = std::ranges::find(state.folders, name, &FOLDER_INFO::name);
        return found->folder.GetDispatch();
    }

    FakeFolder* inbox = nullptr;
};

TEST_F(SelectFolder, IsAsLargeAsItsTemplateSaysWithNothingClipped)
{
    Look(
        [&](HWND picker, const CTreeCtrl&)
        {
            EXPECT_EQ(ClientSizeOf(picker), PixelsOf(picker, 316, 201));
            EXPECT_THAT(LayoutFaultsOf(picker), IsEmpty());
        });
}

TEST_F(SelectFolder, HasTheTextsOfItsControls)
{
    Look(
        [&](HWND picker, const CTreeCtrl&)
        {
            EXPECT_EQ(ChildrenOf(picker).size(), 4u);
            EXPECT_EQ(TextOf(::GetDlgItem(picker, 229)), L"Select Folder");
            EXPECT_EQ(TextOf(::GetDlgItem(picker, 1)), L"OK");
            EXPECT_EQ(TextOf(::GetDlgItem(picker, 2)), L"Cancel");
        });
}

TEST_F(SelectFolder, ShowsAPlainTreeWithLinesAndButtonsOnWhite)
{
    constexpr LONG_PTR wanted =
        TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS | WS_TABSTOP | WS_VISIBLE;
    Look(
        [&](HWND picker, const CTreeCtrl& tree)
        {
            const HWND window = ::GetDlgItem(picker, 220);
            EXPECT_EQ(::GetWindowLongPtrW(window, GWL_STYLE) & wanted, wanted);
            EXPECT_EQ(::GetWindowLongPtrW(window, GWL_STYLE) & TVS_CHECKBOXES, 0);
            // What a dialog makes of a border.
            EXPECT_NE(::GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_CLIENTEDGE, 0);
            EXPECT_EQ(tree.SendMessage(TVM_GETIMAGELIST, TVSIL_STATE), 0);
            EXPECT_EQ(tree.SendMessage(TVM_GETBKCOLOR), static_cast<LRESULT>(white));
        });
}

TEST_F(SelectFolder, HasTwelveImagesOfSixteenPixels)
{
    Look(
        [&](HWND, const CTreeCtrl& tree)
        {
            const auto images =
                reinterpret_cast<HIMAGELIST>(tree.SendMessage(TVM_GETIMAGELIST, TVSIL_NORMAL));
            int width = 0;
            int height = 0;
            ::ImageList_GetIconSize(images, &width, &height);
            EXPECT_EQ(::ImageList_GetImageCount(images), 12);
            EXPECT_EQ(width, 16);
            EXPECT_EQ(height, 16);
        });
}

TEST_F(SelectFolder, IsYellowWithABlueCaption)
{
    Look(
        [&](HWND picker, const CTreeCtrl&)
        {
            const Colours dialog = ColoursOf(picker, WM_CTLCOLORDLG, picker);
            const Colours group = ColoursOf(picker, WM_CTLCOLORSTATIC, ::GetDlgItem(picker, 229));
            const Colours button = ColoursOf(picker, WM_CTLCOLORBTN, ::GetDlgItem(picker, IDOK));
            EXPECT_EQ(dialog.brush, lightYellow);
            EXPECT_EQ(group.brush, lightYellow);
            EXPECT_EQ(group.textBackground, lightYellow);
            EXPECT_EQ(group.text, blue);
            EXPECT_EQ(button.brush, lightYellow);
            EXPECT_NE(button.text, blue);
        });
}

TEST_F(SelectFolder, GoesFromTheTreeToTheButtonsByTab)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            EXPECT_EQ(user.FocusOf(picker), ::GetDlgItem(picker, 220));
            Select(picker, {L"Mailbox", L"Inbox"});
            EXPECT_THAT(TabOrderOf(picker), ElementsAre(220, IDOK, IDCANCEL));
            EXPECT_EQ(::SendMessageW(picker, DM_GETDEFID, 0, 0), MAKELONG(IDOK, DC_HASDEFID));
            user.Click(picker, IDCANCEL);
        });
}

TEST_F(SelectFolder, TakesAMailFolderByNameAndItself)
{
    const INT_PTR result = Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox", L"Archive"});
            EXPECT_TRUE(IsOkEnabled(picker));
            user.Click(picker, IDOK);
        });

    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(state.destFolderPath, L"Archive");
    EXPECT_EQ(state.destFolder.GetDispatch(), FolderNamed(L"Archive"));
}

TEST_F(SelectFolder, ForgetsTheMailFolderWhenOneWithoutMailIsSelected)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox"});
            Select(picker, {L"Mailbox", L"Calendar"});
            EXPECT_FALSE(IsOkEnabled(picker));
            EXPECT_FALSE(HasDestination());
            Select(picker, {L"Mailbox", L"Inbox"});
            EXPECT_TRUE(IsOkEnabled(picker));
            EXPECT_EQ(state.destFolderPath, L"Inbox");
            user.Click(picker, IDCANCEL);
        });
}

TEST_F(SelectFolder, TakesTheFolderThatWasSelectedLast)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox"});
            Select(picker, {L"Mailbox", L"Inbox", L"Archive"});
            Select(picker, {L"Mailbox"});
            user.Click(picker, IDOK);
        });

    EXPECT_EQ(state.destFolderPath, L"Mailbox");
    EXPECT_EQ(state.destFolder.GetDispatch(), FolderNamed(L"Mailbox"));
}

TEST_F(SelectFolder, KeepsItsChoiceWhenTheTreePassesItsSelectionOnAtTheEnd)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox"});
            ModalDriver::RunOnThreadOf(picker, [&] { SelectionPassedOn(::GetDlgItem(picker, 220)); });
            user.Click(picker, IDOK);
        });

    EXPECT_EQ(state.destFolderPath, L"Inbox");
}

TEST_F(SelectFolder, CannotBeEndedByEnterOnAFolderWithoutMail)
{
    const INT_PTR result = Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Calendar"});
            user.PressKey(picker, VK_RETURN);
            user.PressKey(picker, VK_ESCAPE);
        });

    EXPECT_EQ(result, IDCANCEL);
    EXPECT_FALSE(HasDestination());
}

TEST_F(SelectFolder, IsUsableByKeyboardAlone)
{
    const INT_PTR result = Use(
        [&](ModalDriver& user, HWND picker)
        {
            user.PressKey(picker, VK_HOME);
            user.PressKey(picker, VK_DOWN);
            user.WaitUntil([&] { return state.destFolderPath == L"Inbox"; }, "the folder below the first");
            user.PressKey(picker, VK_RETURN);
        });

    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(state.destFolderPath, L"Inbox");
}

TEST_F(SelectFolder, LeavesNoDestinationHoweverItIsCancelled)
{
    const std::vector<UserOfPicker> waysOut{
        [](ModalDriver& user, HWND picker) { user.Click(picker, IDCANCEL); },
        [](ModalDriver& user, HWND picker) { user.PressKey(picker, VK_ESCAPE); },
        [](ModalDriver&, HWND picker) { ::PostMessageW(picker, WM_SYSCOMMAND, SC_CLOSE, 0); },
        [](ModalDriver&, HWND picker) { ::PostMessageW(picker, WM_CLOSE, 0, 0); },
    };
    for (const UserOfPicker& leave : waysOut)
    {
        const INT_PTR result = Use(
            [&](ModalDriver& user, HWND picker)
            {
                Select(picker, {L"Mailbox", L"Inbox"});
                EXPECT_TRUE(HasDestination());
                leave(user, picker);
            });

        EXPECT_EQ(result, IDCANCEL);
        EXPECT_FALSE(HasDestination());
    }
}

TEST_F(SelectFolder, KeepsOneReferenceToTheDestinationAlone)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox"});
            user.Click(picker, IDOK);
        });
    const int alive = store.log.liveObjects;

    state.folders.clear();

    EXPECT_EQ(alive, 4);
    EXPECT_EQ(store.log.liveObjects, 1);
    EXPECT_EQ(state.destFolder.GetName(), L"Inbox");
}

TEST_F(SelectFolder, TellsOfAFailureWhileItIsMadeAndLeavesNoDestination)
{
    for (std::size_t call = 1; call <= state.folders.size(); ++call)
    {
        store.log.lines.clear();
        store.log.failAt = call;
        ModalDriver user(
            [&](ModalDriver& self)
            {
                const HWND report = self.WaitForDialog(title);
                EXPECT_EQ(::GetDlgItem(report, IDC_DESTINATION_TREE), nullptr);
                self.Click(report, IDOK);
            });
        CSelectFolderDlg dialog(state);

        const INT_PTR result = dialog.DoModal();
        user.Join();

        EXPECT_EQ(result, IDCANCEL) << "call " << call;
        EXPECT_FALSE(HasDestination()) << "call " << call;
    }
}

TEST_F(SelectFolder, TellsOfAFailureAtASelectionAndLeavesNothingChosen)
{
    Use(
        [&](ModalDriver& user, HWND picker)
        {
            Select(picker, {L"Mailbox", L"Inbox"});
            store.log.failAt = store.log.lines.size() + 1;
            const HTREEITEM archive = ItemAt(TreeOf(picker), {L"Mailbox", L"Inbox", L"Archive"});
            ::PostMessageW(::GetDlgItem(picker, 220), TVM_SELECTITEM, TVGN_CARET,
                           reinterpret_cast<LPARAM>(archive));
            user.Click(user.WaitForDialog(title), IDOK);
            ::SendMessageW(picker, WM_NULL, 0, 0);
            EXPECT_FALSE(IsOkEnabled(picker));
            EXPECT_FALSE(HasDestination());
            Select(picker, {L"Mailbox", L"Inbox"});
            EXPECT_TRUE(IsOkEnabled(picker));
            user.Click(picker, IDCANCEL);
        });
}

TEST_F(SelectFolder, GivesAllItsHandlesBack)
{
    constexpr int rounds = 200;
    const auto openAndClose = [&]
    {
        for (int i = 0; i < rounds; ++i)
            Use(
                [&](ModalDriver& user, HWND picker)
                {
                    Select(picker, {L"Mailbox", L"Inbox"});
                    user.Click(picker, i % 2 == 0 ? IDOK : IDCANCEL);
                });
    };
    openAndClose();
    const HandleCounts before = HandleCounts::Now();

    openAndClose();

    EXPECT_LE(HandleCounts::Now(), before.WithSlackFor(200));
}
}    // namespace
