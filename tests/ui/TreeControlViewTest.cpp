#include "ui/TreeControlView.h"

#include "tests/win/ControlFixture.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
constexpr int branches = 20;
constexpr int leavesOfABranch = 20;

// A tree that is shown, of one root with branches and leaves below it, all of them collapsed.
class TreeControlViewOfABranch : public ControlFixture<CTreeCtrl>
{
protected:
    TreeControlViewOfABranch() : ControlFixture(WC_TREEVIEWW, TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT)
    {
        root = view.InsertItem(TreeItem::none, FolderTreeView::Place::sorted, L"Root", 0, 0);
        for (int branch = 0; branch < branches; ++branch)
        {
            parents.push_back(view.InsertItem(root, FolderTreeView::Place::last, L"Branch", 0, 0));
            for (int leaf = 0; leaf < leavesOfABranch; ++leaf)
                view.InsertItem(parents.back(), FolderTreeView::Place::last, L"Leaf", 0, 0);
        }
        ::ShowWindow(frame.get(), SW_SHOWNOACTIVATE);
        ::UpdateWindow(window);
        ::SetWindowSubclass(window, &CountPainting, 1, reinterpret_cast<DWORD_PTR>(&timesPainted));
    }
    ~TreeControlViewOfABranch() override { ::RemoveWindowSubclass(window, &CountPainting, 1); }

    static LRESULT CALLBACK CountPainting(HWND tree, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                          DWORD_PTR counter)
    {
        if (message == WM_PAINT)
            ++*reinterpret_cast<int*>(counter);
        return ::DefSubclassProc(tree, message, wParam, lParam);
    }

    bool IsExpanded(TreeItem item) const
    {
        return control.GetItemState(ToHandle(item), TVIS_EXPANDED) == TVIS_EXPANDED;
    }

    TreeControlView view{control};
    TreeItem root = TreeItem::none;
    std::vector<TreeItem> parents;
    int timesPainted = 0;
};
}    // namespace

TEST_F(TreeControlViewOfABranch, ExpandsItToTheLastLevel)
{
    view.ExpandBranch(root);

    EXPECT_TRUE(IsExpanded(root));
    for (const TreeItem parent : parents)
        EXPECT_TRUE(IsExpanded(parent));
}

TEST_F(TreeControlViewOfABranch, DrawsItOnceHoweverManyItemsItExpands)
{
    view.ExpandBranch(root);

    EXPECT_EQ(timesPainted, 0);
    EXPECT_TRUE(::GetUpdateRect(window, nullptr, FALSE));
    ::UpdateWindow(window);
    EXPECT_EQ(timesPainted, 1);
}
