#pragma once

#include "win/Wnd.h"

#include <windows.h>

#include <commctrl.h>

#include <string>

// A tree view. An item is named by its HTREEITEM as long as it is in the tree; state bits are TVIS_....
class CTreeCtrl : public CWnd
{
public:
    // `parent` may be TVI_ROOT; `after` a sibling, TVI_FIRST, TVI_LAST or TVI_SORT. Null when it is refused.
    HTREEITEM InsertItem(const std::wstring& text, int image, int selectedImage, HTREEITEM parent = TVI_ROOT,
                         HTREEITEM after = TVI_LAST) const;
    void DeleteAllItems() const;

    // Null when there is none.
    HTREEITEM GetRootItem() const;                   // the first at the root
    HTREEITEM GetChildItem(HTREEITEM item) const;    // the first of its children
    HTREEITEM GetNextSiblingItem(HTREEITEM item) const;
    HTREEITEM GetParentItem(HTREEITEM item) const;
    HTREEITEM GetSelectedItem() const;
    bool ItemHasChildren(HTREEITEM item) const;

    std::wstring GetItemText(HTREEITEM item) const;
    int GetItemImage(HTREEITEM item) const;
    UINT GetItemState(HTREEITEM item, UINT mask) const;
    void SetItemState(HTREEITEM item, UINT state, UINT mask) const;
    void SetItemStateEx(HTREEITEM item, UINT state) const;    // TVIS_EX_..., kept by common controls 6

    // The state image that stands before an item; 0 is none.
    int GetCheckIndex(HTREEITEM item) const;
    void SetCheckIndex(HTREEITEM item, int index) const;

    void Expand(HTREEITEM item) const;
    void EnsureVisible(HTREEITEM item) const;
    void SelectItem(HTREEITEM item) const;    // null takes the selection away

    void SetImageList(HIMAGELIST images, int kind) const;    // borrowed; TVSIL_NORMAL or TVSIL_STATE
    void SetBkColor(COLORREF colour) const;

    // In the tree's own coordinates.
    TVHITTESTINFO HitTest(POINT point) const;    // the item there, or null, and which part of it (TVHT_...)
    RECT GetItemRect(HTREEITEM item, bool textOnly) const;    // empty while the item is not shown

private:
    HTREEITEM GetNextItem(HTREEITEM item, UINT which) const;
    void SetItem(const TVITEMEXW& item) const;
};
