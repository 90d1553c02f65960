#include "ui/TreeControlView.h"

#include "win/RedrawPause.h"

namespace
{
void ExpandItem(const CTreeCtrl& tree, HTREEITEM item)
{
    if (tree.ItemHasChildren(item))
    {
        tree.Expand(item);
        for (HTREEITEM child = tree.GetChildItem(item); child; child = tree.GetNextSiblingItem(child))
            ExpandItem(tree, child);
    }
    tree.EnsureVisible(tree.GetSelectedItem());
}
}    // namespace

TreeItem ToTreeItem(HTREEITEM item) noexcept
{
    return static_cast<TreeItem>(reinterpret_cast<std::uintptr_t>(item));
}

HTREEITEM ToHandle(TreeItem item) noexcept
{
    return reinterpret_cast<HTREEITEM>(static_cast<std::uintptr_t>(item));
}

TreeItem TreeControlView::InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                                     int selectedImage)
{
    return ToTreeItem(tree.InsertItem(text, image, selectedImage,
                                      parent == TreeItem::none ? TVI_ROOT : ToHandle(parent),
                                      place == Place::sorted ? TVI_SORT : TVI_LAST));
}

void TreeControlView::SetCheckState(TreeItem item, CheckState state)
{
    tree.SetCheckIndex(ToHandle(item), static_cast<int>(state));
}

CheckState TreeControlView::GetCheckState(TreeItem item) const
{
    return static_cast<CheckState>(tree.GetCheckIndex(ToHandle(item)));
}

void TreeControlView::SetBold(TreeItem item)
{
    tree.SetItemState(ToHandle(item), TVIS_BOLD, TVIS_BOLD);
}

void TreeControlView::SetGreyed(TreeItem item)
{
    tree.SetItemStateEx(ToHandle(item), TVIS_EX_DISABLED);
}

void TreeControlView::ExpandBranch(TreeItem item)
{
    ExpandTreeBranch(tree, ToHandle(item));
}

void TreeControlView::EnsureVisible(TreeItem item)
{
    tree.EnsureVisible(ToHandle(item));
}

void ExpandTreeBranch(const CTreeCtrl& tree, HTREEITEM item)
{
    // A control that draws each step would spend most of the time of a large tree on it.
    const RedrawPause pause(tree);
    ExpandItem(tree, item);
}
