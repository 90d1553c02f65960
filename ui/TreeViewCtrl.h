#pragma once

#include "win/TreeCtrl.h"

// The folder tree with check boxes of three states (CheckState, kept as the items' state images). A click on
// a check box, or the Space key on the selected item, turns it over, takes everything below along and brings
// everything above up to date.
class CTreeViewCtrl : public CTreeCtrl
{
public:
    const MessageMap& GetMessageMap() const override;

private:
    LRESULT OnLButtonDown(WPARAM keys, LPARAM position);
    LRESULT OnKeyDown(WPARAM key, LPARAM details);
    LRESULT OnChar(WPARAM character, LPARAM details);

    void Toggle(HTREEITEM item) const;
    void SetChildrenCheck(HTREEITEM item) const;        // every descendant becomes as the item is
    bool AreSiblingsUnchecked(HTREEITEM item) const;    // the item and all its siblings
    bool AreSiblingsChecked(HTREEITEM item) const;      // none of them unchecked or partly checked
    void UpdateParentChecks(HTREEITEM item) const;      // every ancestor, from its children
};
