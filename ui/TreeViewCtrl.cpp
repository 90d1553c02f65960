#include "ui/TreeViewCtrl.h"

#include "engine/FolderTreeView.h"

#include <windows.h>

#include <windowsx.h>

namespace
{
constexpr int unchecked = static_cast<int>(CheckState::unchecked);
constexpr int checked = static_cast<int>(CheckState::checked);
constexpr int partlyChecked = static_cast<int>(CheckState::partlyChecked);
}    // namespace

const MessageMap& CTreeViewCtrl::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnMessage<&CTreeViewCtrl::OnLButtonDown>(WM_LBUTTONDOWN),
        OnMessage<&CTreeViewCtrl::OnKeyDown>(WM_KEYDOWN),
        OnMessage<&CTreeViewCtrl::OnChar>(WM_CHAR),
    };
    static const MessageMap map{&CTreeCtrl::GetMessageMap(), handlers};
    return map;
}

LRESULT CTreeViewCtrl::OnLButtonDown(WPARAM, LPARAM position)
{
    const TVHITTESTINFO hit = HitTest({GET_X_LPARAM(position), GET_Y_LPARAM(position)});
    if (hit.hItem && (hit.flags & TVHT_ONITEMSTATEICON))
        Toggle(hit.hItem);
    return Default();
}

LRESULT CTreeViewCtrl::OnKeyDown(WPARAM key, LPARAM)
{
    const HTREEITEM selected = GetSelectedItem();
    if (key == VK_SPACE && selected)
        Toggle(selected);
    return Default();
}

LRESULT CTreeViewCtrl::OnChar(WPARAM character, LPARAM)
{
    // The blank of the Space key is not the beginning of a folder's name to look for.
    return character == L' ' ? 0 : Default();
}

void CTreeViewCtrl::Toggle(HTREEITEM item) const
{
    SetCheckIndex(item, GetCheckIndex(item) == unchecked ? checked : unchecked);
    if (GetParentItem(item))
        UpdateParentChecks(item);
    if (ItemHasChildren(item))
        SetChildrenCheck(item);
}

void CTreeViewCtrl::SetChildrenCheck(HTREEITEM item) const
{
    const int index = GetCheckIndex(item);
    for (HTREEITEM child = GetChildItem(item); child; child = GetNextSiblingItem(child))
    {
        SetCheckIndex(child, index);
        if (ItemHasChildren(child))
            SetChildrenCheck(child);
    }
}

bool CTreeViewCtrl::AreSiblingsUnchecked(HTREEITEM item) const
{
    for (HTREEITEM child = GetChildItem(GetParentItem(item)); child; child = GetNextSiblingItem(child))
    {
        if (GetCheckIndex(child) != unchecked)
            return false;
    }
    return true;
}

bool CTreeViewCtrl::AreSiblingsChecked(HTREEITEM item) const
{
    for (HTREEITEM child = GetChildItem(GetParentItem(item)); child; child = GetNextSiblingItem(child))
    {
        const int index = GetCheckIndex(child);
        if (index == unchecked || index == partlyChecked)
            return false;
    }
    return true;
}

void CTreeViewCtrl::UpdateParentChecks(HTREEITEM item) const
{
    for (HTREEITEM parent = GetParentItem(item); parent; item = parent, parent = GetParentItem(item))
    {
        int index = partlyChecked;
        if (AreSiblingsUnchecked(item))
            index = unchecked;
        else if (AreSiblingsChecked(item))
            index = checked;
        SetCheckIndex(parent, index);
    }
}
