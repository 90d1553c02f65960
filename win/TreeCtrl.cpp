#include "win/TreeCtrl.h"

#include "win/ControlText.h"

#include <cstring>

namespace
{
constexpr UINT checkIndexShift = 12;    // the state image's place in an item's state
}

HTREEITEM CTreeCtrl::InsertItem(const std::wstring& text, int image, int selectedImage, HTREEITEM parent,
                                HTREEITEM after) const
{
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = after;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insertion.item.pszText = const_cast<wchar_t*>(text.c_str());
    insertion.item.iImage = image;
    insertion.item.iSelectedImage = selectedImage;
    return reinterpret_cast<HTREEITEM>(SendMessage(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

void CTreeCtrl::DeleteAllItems() const
{
    SendMessage(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
}

HTREEITEM CTreeCtrl::GetNextItem(HTREEITEM item, UINT which) const
{
    return reinterpret_cast<HTREEITEM>(SendMessage(TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
}

HTREEITEM CTreeCtrl::GetRootItem() const
{
    return GetNextItem(nullptr, TVGN_ROOT);
}

HTREEITEM CTreeCtrl::GetChildItem(HTREEITEM item) const
{
    return GetNextItem(item, TVGN_CHILD);
}

HTREEITEM CTreeCtrl::GetNextSiblingItem(HTREEITEM item) const
{
    return GetNextItem(item, TVGN_NEXT);
}

HTREEITEM CTreeCtrl::GetParentItem(HTREEITEM item) const
{
    return GetNextItem(item, TVGN_PARENT);
}

HTREEITEM CTreeCtrl::GetSelectedItem() const
{
    return GetNextItem(nullptr, TVGN_CARET);
}

bool CTreeCtrl::ItemHasChildren(HTREEITEM item) const
{
    return GetChildItem(item) != nullptr;
}

std::wstring CTreeCtrl::GetItemText(HTREEITEM item) const
{
    return ReadControlText(
        [&](wchar_t* buffer, int capacity) -> const wchar_t*
        {
            TVITEMW wanted{};
            wanted.mask = TVIF_TEXT;
            wanted.hItem = item;
            wanted.pszText = buffer;
            wanted.cchTextMax = capacity;
            return SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted)) ? wanted.pszText : nullptr;
        });
}

int CTreeCtrl::GetItemImage(HTREEITEM item) const
{
    TVITEMW wanted{};
    wanted.mask = TVIF_IMAGE;
    wanted.hItem = item;
    SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
    return wanted.iImage;
}

UINT CTreeCtrl::GetItemState(HTREEITEM item, UINT mask) const
{
    TVITEMW wanted{};
    wanted.mask = TVIF_STATE;
    wanted.hItem = item;
    wanted.stateMask = mask;
    SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
    // Some versions give the bits outside the mask as well.
    return wanted.state & mask;
}

void CTreeCtrl::SetItem(const TVITEMEXW& item) const
{
    SendMessage(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void CTreeCtrl::SetItemState(HTREEITEM item, UINT state, UINT mask) const
{
    TVITEMEXW changed{};
    changed.mask = TVIF_STATE;
    changed.hItem = item;
    changed.state = state;
    changed.stateMask = mask;
    SetItem(changed);
}

void CTreeCtrl::SetItemStateEx(HTREEITEM item, UINT state) const
{
    TVITEMEXW changed{};
    changed.mask = TVIF_STATEEX;
    changed.hItem = item;
    changed.uStateEx = state;
    SetItem(changed);
}

int CTreeCtrl::GetCheckIndex(HTREEITEM item) const
{
    return static_cast<int>(GetItemState(item, TVIS_STATEIMAGEMASK) >> checkIndexShift);
}

void CTreeCtrl::SetCheckIndex(HTREEITEM item, int index) const
{
    SetItemState(item, static_cast<UINT>(index) << checkIndexShift, TVIS_STATEIMAGEMASK);
}

void CTreeCtrl::Expand(HTREEITEM item) const
{
    SendMessage(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
}

void CTreeCtrl::EnsureVisible(HTREEITEM item) const
{
    SendMessage(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
}

void CTreeCtrl::SelectItem(HTREEITEM item) const
{
    SendMessage(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

void CTreeCtrl::SetImageList(HIMAGELIST images, int kind) const
{
    SendMessage(TVM_SETIMAGELIST, static_cast<WPARAM>(kind), reinterpret_cast<LPARAM>(images));
}

void CTreeCtrl::SetBkColor(COLORREF colour) const
{
    SendMessage(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(colour));
}

TVHITTESTINFO CTreeCtrl::HitTest(POINT point) const
{
    TVHITTESTINFO hit{};
    hit.pt = point;
    SendMessage(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    return hit;
}

RECT CTreeCtrl::GetItemRect(HTREEITEM item, bool textOnly) const
{
    // The rectangle goes in holding the item that it is wanted of.
    RECT rectangle{};
    std::memcpy(&rectangle, &item, sizeof item);
    const LRESULT shown = SendMessage(TVM_GETITEMRECT, textOnly, reinterpret_cast<LPARAM>(&rectangle));
    return shown ? rectangle : RECT{};
}
