#include "win/TreeCtrl.h"

#include "tests/win/ControlFixture.h"

#include <string>

namespace
{
constexpr DWORD treeStyle = TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS;

class TreeCtrl : public ControlFixture<CTreeCtrl>
{
protected:
    TreeCtrl() : ControlFixture(WC_TREEVIEWW, treeStyle) {}

    HTREEITEM Insert(const wchar_t* text, HTREEITEM parent = TVI_ROOT) const
    {
        return control.InsertItem(text, 0, 0, parent);
    }

    HTREEITEM Next(HTREEITEM item, UINT which) const
    {
        return reinterpret_cast<HTREEITEM>(Ask(TVM_GETNEXTITEM, which, item));
    }

    TVITEMEXW Read(HTREEITEM item, UINT mask) const
    {
        TVITEMEXW read{};
        read.mask = mask;
        read.hItem = item;
        read.stateMask = ~0U;
        Ask(TVM_GETITEMW, 0, &read);
        return read;
    }

    std::wstring TextOf(HTREEITEM item) const
    {
        wchar_t text[100] = L"";
        TVITEMW read{};
        read.mask = TVIF_TEXT;
        read.hItem = item;
        read.pszText = text;
        read.cchTextMax = ARRAYSIZE(text);
        Ask(TVM_GETITEMW, 0, &read);
        return text;
    }

    void SetState(HTREEITEM item, UINT state) const
    {
        TVITEMW changed{};
        changed.mask = TVIF_STATE;
        changed.hItem = item;
        changed.state = state;
        changed.stateMask = ~0U;
        Ask(TVM_SETITEMW, 0, &changed);
    }
};

TEST_F(TreeCtrl, InsertsAnItemWithItsTextAndBothImages)
{
    const HTREEITEM item = control.InsertItem(L"Inbox", 3, 5);

    const TVITEMEXW read = Read(item, TVIF_IMAGE | TVIF_SELECTEDIMAGE);
    EXPECT_EQ(TextOf(item), L"Inbox");
    EXPECT_EQ(read.iImage, 3);
    EXPECT_EQ(read.iSelectedImage, 5);
    EXPECT_EQ(Next(nullptr, TVGN_ROOT), item);
}

TEST_F(TreeCtrl, InsertsBehindTheOtherChildrenUnlessToldWhere)
{
    const HTREEITEM parent = Insert(L"Mailbox");
    const HTREEITEM first = Insert(L"Sent Items", parent);

    const HTREEITEM second = Insert(L"Inbox", parent);

    EXPECT_EQ(Next(parent, TVGN_CHILD), first);
    EXPECT_EQ(Next(first, TVGN_NEXT), second);
}

TEST_F(TreeCtrl, InsertsByTextAmongItsSiblingsWhenTold)
{
    const HTREEITEM last = Insert(L"Personal Folders");

    const HTREEITEM first = control.InsertItem(L"Archive", 0, 0, TVI_ROOT, TVI_SORT);

    EXPECT_EQ(Next(nullptr, TVGN_ROOT), first);
    EXPECT_EQ(Next(first, TVGN_NEXT), last);
}

TEST_F(TreeCtrl, DeletesAllItems)
{
    Insert(L"Inbox", Insert(L"Mailbox"));

    control.DeleteAllItems();

    EXPECT_EQ(Ask(TVM_GETCOUNT), 0);
}

TEST_F(TreeCtrl, FindsTheItemsAroundAnItem)
{
    const HTREEITEM root = Insert(L"Mailbox");
    const HTREEITEM child = Insert(L"Inbox", root);
    const HTREEITEM sibling = Insert(L"Outbox", root);

    EXPECT_EQ(control.GetRootItem(), root);
    EXPECT_EQ(control.GetChildItem(root), child);
    EXPECT_EQ(control.GetNextSiblingItem(child), sibling);
    EXPECT_EQ(control.GetParentItem(sibling), root);
    EXPECT_TRUE(control.ItemHasChildren(root));
}

TEST_F(TreeCtrl, FindsNothingAroundAnItemThatStandsAlone)
{
    const HTREEITEM alone = Insert(L"Mailbox");

    EXPECT_EQ(control.GetChildItem(alone), nullptr);
    EXPECT_EQ(control.GetNextSiblingItem(alone), nullptr);
    EXPECT_EQ(control.GetParentItem(alone), nullptr);
    EXPECT_FALSE(control.ItemHasChildren(alone));
}

TEST_F(TreeCtrl, HasNoRootItemWhileItIsEmpty)
{
    EXPECT_EQ(control.GetRootItem(), nullptr);
}

TEST_F(TreeCtrl, ReadsATextOfAnyLength)
{
    for (const std::size_t length : {0U, 1U, 126U, 127U, 128U, 255U, 1000U})
    {
        const std::wstring text(length, L'x');
        EXPECT_EQ(control.GetItemText(Insert(text.c_str())), text) << length << " characters";
    }
}

TEST_F(TreeCtrl, ReadsAnItemsImage)
{
    EXPECT_EQ(control.GetItemImage(control.InsertItem(L"Inbox", 7, 2)), 7);
}

TEST_F(TreeCtrl, ChangesOnlyTheStateBitsUnderTheMask)
{
    const HTREEITEM item = Insert(L"Inbox");
    SetState(item, TVIS_CUT | INDEXTOSTATEIMAGEMASK(2));

    control.SetItemState(item, TVIS_BOLD, TVIS_BOLD | TVIS_CUT);

    EXPECT_EQ(Read(item, TVIF_STATE).state & (TVIS_BOLD | TVIS_CUT | TVIS_STATEIMAGEMASK),
              TVIS_BOLD | INDEXTOSTATEIMAGEMASK(2));
}

TEST_F(TreeCtrl, ReadsOnlyTheStateBitsUnderTheMask)
{
    const HTREEITEM item = Insert(L"Inbox");
    SetState(item, TVIS_BOLD | TVIS_CUT);

    EXPECT_EQ(control.GetItemState(item, TVIS_BOLD | TVIS_DROPHILITED), UINT{TVIS_BOLD});
}

// Keeps the last TVM_SETITEM that a tree receives in the TVITEMEXW that `kept` points to.
LRESULT CALLBACK KeepItemSet(HWND tree, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR kept)
{
    if (message == TVM_SETITEMW)
        *reinterpret_cast<TVITEMEXW*>(kept) = *reinterpret_cast<const TVITEMEXW*>(lParam);
    return ::DefSubclassProc(tree, message, wParam, lParam);
}

// Not every system keeps this state where it can be read back, so it is caught on its way in.
TEST_F(TreeCtrl, GreysAnItem)
{
    const HTREEITEM item = Insert(L"Calendar");
    TVITEMEXW received{};
    ::SetWindowSubclass(window, &KeepItemSet, 0, reinterpret_cast<DWORD_PTR>(&received));

    control.SetItemStateEx(item, TVIS_EX_DISABLED);

    EXPECT_EQ(received.mask, UINT{TVIF_STATEEX});
    EXPECT_EQ(received.hItem, item);
    EXPECT_EQ(received.uStateEx, UINT{TVIS_EX_DISABLED});
}

TEST_F(TreeCtrl, SetsTheStateImageAndNothingElse)
{
    const HTREEITEM item = Insert(L"Inbox");
    SetState(item, TVIS_BOLD | INDEXTOSTATEIMAGEMASK(1));

    control.SetCheckIndex(item, 2);

    EXPECT_EQ(Read(item, TVIF_STATE).state & (TVIS_BOLD | TVIS_STATEIMAGEMASK),
              TVIS_BOLD | INDEXTOSTATEIMAGEMASK(2));
}

TEST_F(TreeCtrl, ReadsTheStateImage)
{
    const HTREEITEM item = Insert(L"Inbox");
    EXPECT_EQ(control.GetCheckIndex(item), 0);

    SetState(item, TVIS_BOLD | INDEXTOSTATEIMAGEMASK(3));

    EXPECT_EQ(control.GetCheckIndex(item), 3);
}

TEST_F(TreeCtrl, ExpandsAnItem)
{
    const HTREEITEM root = Insert(L"Mailbox");
    Insert(L"Inbox", root);

    control.Expand(root);

    EXPECT_NE(Read(root, TVIF_STATE).state & TVIS_EXPANDED, 0U);
}

TEST_F(TreeCtrl, SelectsAnItemAndTakesTheSelectionAway)
{
    Insert(L"Inbox");
    const HTREEITEM item = Insert(L"Outbox");

    control.SelectItem(item);
    EXPECT_EQ(Next(nullptr, TVGN_CARET), item);
    EXPECT_EQ(control.GetSelectedItem(), item);

    control.SelectItem(nullptr);
    EXPECT_EQ(Next(nullptr, TVGN_CARET), nullptr);
}

TEST_F(TreeCtrl, ScrollsUntilAnItemIsVisible)
{
    const HTREEITEM first = Insert(L"Folder");
    HTREEITEM last = nullptr;
    for (int i = 0; i < 100; ++i)
        last = Insert(L"Folder");
    ASSERT_EQ(Next(nullptr, TVGN_FIRSTVISIBLE), first);

    control.EnsureVisible(last);

    RECT inside{};
    ::GetClientRect(window, &inside);
    EXPECT_NE(Next(nullptr, TVGN_FIRSTVISIBLE), first);
    EXPECT_LE(control.GetItemRect(last, false).bottom, inside.bottom);
}

TEST_F(TreeCtrl, ShowsImageListsOfBothKinds)
{
    const HIMAGELIST normal = ::ImageList_Create(16, 16, ILC_COLOR24, 1, 1);
    const HIMAGELIST state = ::ImageList_Create(16, 16, ILC_COLOR24, 1, 1);

    control.SetImageList(normal, TVSIL_NORMAL);
    control.SetImageList(state, TVSIL_STATE);

    EXPECT_EQ(reinterpret_cast<HIMAGELIST>(Ask(TVM_GETIMAGELIST, TVSIL_NORMAL)), normal);
    EXPECT_EQ(reinterpret_cast<HIMAGELIST>(Ask(TVM_GETIMAGELIST, TVSIL_STATE)), state);
    control.SetImageList(nullptr, TVSIL_NORMAL);
    control.SetImageList(nullptr, TVSIL_STATE);
    ::ImageList_Destroy(normal);
    ::ImageList_Destroy(state);
}

TEST_F(TreeCtrl, TakesABackgroundColour)
{
    control.SetBkColor(RGB(10, 20, 30));

    EXPECT_EQ(static_cast<COLORREF>(Ask(TVM_GETBKCOLOR)), COLORREF{RGB(10, 20, 30)});
}

TEST_F(TreeCtrl, HitsTheTextOfAnItemInsideItsRectangle)
{
    Insert(L"Inbox");
    const HTREEITEM item = Insert(L"Outbox");
    const RECT text = control.GetItemRect(item, true);

    const TVHITTESTINFO hit = control.HitTest({(text.left + text.right) / 2, (text.top + text.bottom) / 2});

    EXPECT_EQ(hit.hItem, item);
    EXPECT_EQ(hit.flags, UINT{TVHT_ONITEMLABEL});
}

TEST_F(TreeCtrl, HitsNoItemBelowTheLast)
{
    Insert(L"Inbox");

    const TVHITTESTINFO hit = control.HitTest({5, 250});

    EXPECT_EQ(hit.hItem, nullptr);
    EXPECT_EQ(hit.flags, UINT{TVHT_NOWHERE});
}

TEST_F(TreeCtrl, TellsAnItemsTextFromItsWholeLine)
{
    const HTREEITEM item = Insert(L"Inbox");

    const RECT line = control.GetItemRect(item, false);
    const RECT text = control.GetItemRect(item, true);

    EXPECT_EQ(line.left, 0);
    EXPECT_GT(text.left, line.left);
    EXPECT_LT(text.right, line.right);
    EXPECT_EQ(text.top, line.top);
    EXPECT_EQ(text.bottom, line.bottom);
}

TEST_F(TreeCtrl, HasNoRectangleOfAnItemInsideACollapsedOne)
{
    const HTREEITEM hidden = Insert(L"Inbox", Insert(L"Mailbox"));

    const RECT none = control.GetItemRect(hidden, false);

    EXPECT_TRUE(::IsRectEmpty(&none));
}
}    // namespace
