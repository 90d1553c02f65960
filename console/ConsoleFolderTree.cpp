#include "console/ConsoleFolderTree.h"

#include "console/Text.h"

TreeItem ConsoleFolderTree::InsertItem(TreeItem parent, Place, const std::wstring& text, int, int)
{
    const int depth = parent == TreeItem::none ? 0 : Get(parent).depth + 1;
    items.push_back({.parent = parent, .text = text, .depth = depth});
    return static_cast<TreeItem>(items.size());
}

void ConsoleFolderTree::SetCheckState(TreeItem item, CheckState state)
{
    Get(item).checkState = state;
}

CheckState ConsoleFolderTree::GetCheckState(TreeItem item) const
{
    return Get(item).checkState;
}

void ConsoleFolderTree::SetGreyed(TreeItem item)
{
    Get(item).greyed = true;
}

TreeItem ConsoleFolderTree::GetParent(TreeItem item) const
{
    return Get(item).parent;
}

const std::wstring& ConsoleFolderTree::GetText(TreeItem item) const
{
    return Get(item).text;
}

bool ConsoleFolderTree::IsGreyed(TreeItem item) const
{
    return Get(item).greyed;
}

void ConsoleFolderTree::Print(OutputStream& out) const
{
    for (const Item& item : items)
    {
        const std::wstring indentation(static_cast<std::size_t>(item.depth) * 2, L' ');
        out.WriteLine(indentation + OnOneLine(item.text) + (item.greyed ? L"  [no mail folder]" : L""));
    }
}

ConsoleFolderTree::Item& ConsoleFolderTree::Get(TreeItem item)
{
    return items.at(static_cast<std::size_t>(item) - 1);
}

const ConsoleFolderTree::Item& ConsoleFolderTree::Get(TreeItem item) const
{
    return items.at(static_cast<std::size_t>(item) - 1);
}
