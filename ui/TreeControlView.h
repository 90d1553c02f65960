#pragma once

#include "engine/FolderTreeView.h"
#include "win/TreeCtrl.h"

// The engine's folder tree in a tree control; the control is borrowed. Each call is a message to the control,
// so any thread may make it while the control's own thread handles its messages.
class TreeControlView : public FolderTreeView
{
public:
    explicit TreeControlView(CTreeCtrl& tree) noexcept : tree(tree) {}

    TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                        int selectedImage) override;
    void SetCheckState(TreeItem item, CheckState state) override;
    CheckState GetCheckState(TreeItem item) const override;
    void SetBold(TreeItem item) override;
    void SetGreyed(TreeItem item) override;
    void ExpandBranch(TreeItem item) override;
    void EnsureVisible(TreeItem item) override;

private:
    CTreeCtrl& tree;
};

// Expands the item and all below it that have children, making the selected item visible after each. The
// control is drawn once, at the end.
void ExpandTreeBranch(const CTreeCtrl& tree, HTREEITEM item);

// The engine's name of a control's item and back; none is null.
TreeItem ToTreeItem(HTREEITEM item) noexcept;
HTREEITEM ToHandle(TreeItem item) noexcept;
