#pragma once

#include "console/OutputStream.h"
#include "engine/FolderTreeView.h"

#include <string>
#include <vector>

// The folder tree as the engine draws it, kept in memory: the console prints it or ticks folders in it.
class ConsoleFolderTree : public FolderTreeView
{
public:
    TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                        int selectedImage) override;
    void SetCheckState(TreeItem item, CheckState state) override;
    CheckState GetCheckState(TreeItem item) const override;
    void SetBold(TreeItem) override {}    // the item count says as much
    void SetGreyed(TreeItem item) override;
    void ExpandBranch(TreeItem) override {}    // always open
    void EnsureVisible(TreeItem) override {}

    TreeItem GetParent(TreeItem item) const;
    const std::wstring& GetText(TreeItem item) const;    // the name, and the item count in parentheses if any
    bool IsGreyed(TreeItem item) const;                  // holds no mail

    // One line for each folder, its sub-folders below it and further to the right.
    void Print(OutputStream& out) const;

private:
    struct Item
    {
        TreeItem parent;
        std::wstring text;
        int depth;
        CheckState checkState = CheckState::none;
        bool greyed = false;
    };

    Item& Get(TreeItem item);
    const Item& Get(TreeItem item) const;

    std::vector<Item> items;    // in pre-order, for the engine inserts them so; item n is items[n - 1]
};
