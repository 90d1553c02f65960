#include "ui/TreeViewCtrl.h"

#include "tests/win/ControlFixture.h"
#include "ui/FolderImages.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace
{
enum Check
{
    none,
    unchecked,
    checked,
    partly
};

class TreeViewCtrl : public ControlFixture<CTreeViewCtrl>
{
protected:
    TreeViewCtrl()
        : ControlFixture(WC_TREEVIEWW, TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS)
    {
        control.SubclassWindow(window);
        images = MakeCheckImages();
        control.SetImageList(images.get(), TVSIL_STATE);
    }

    HTREEITEM Insert(HTREEITEM parent = TVI_ROOT, Check check = checked)
    {
        const HTREEITEM item = control.InsertItem(L"Folder " + std::to_wstring(++inserted), 0, 0, parent);
        control.SetCheckIndex(item, check);
        return item;
    }
    void ExpandAll(HTREEITEM item) const
    {
        control.Expand(item);
        for (HTREEITEM child = control.GetChildItem(item); child; child = control.GetNextSiblingItem(child))
            ExpandAll(child);
    }

    Check CheckOf(HTREEITEM item) const
    {
        TVITEMW read{};
        read.mask = TVIF_STATE;
        read.hItem = item;
        read.stateMask = TVIS_STATEIMAGEMASK;
        Ask(TVM_GETITEMW, 0, &read);
        return static_cast<Check>(read.state >> 12);
    }

    // A press of the left button, a little to the left of the item's text (its check box) or on the text.
    void ClickOn(HTREEITEM item, int right) const
    {
        control.EnsureVisible(item);
        const RECT text = control.GetItemRect(item, true);
        const LPARAM position = MAKELPARAM(text.left + right, (text.top + text.bottom) / 2);
        // Ends the loop in which the control waits for the button to come up.
        ::PostMessageW(window, WM_LBUTTONUP, 0, position);
        Ask(WM_LBUTTONDOWN, MK_LBUTTON, position);
    }
    void ClickCheckBox(HTREEITEM item) const { ClickOn(item, -8); }
    void PressSpace() const
    {
        Ask(WM_KEYDOWN, VK_SPACE);
        Ask(WM_CHAR, L' ');
    }

    CImageList images;
    int inserted = 0;
};

TEST_F(TreeViewCtrl, ChecksEveryFolderBelowOneThatIsClicked)
{
    const HTREEITEM root = Insert(TVI_ROOT, unchecked);
    const HTREEITEM inbox = Insert(root, unchecked);
    const HTREEITEM list = Insert(inbox, unchecked);
    const HTREEITEM thread = Insert(list, unchecked);
    const HTREEITEM sent = Insert(root, unchecked);
    ExpandAll(root);

    ClickCheckBox(inbox);

    EXPECT_EQ(CheckOf(inbox), checked);
    EXPECT_EQ(CheckOf(list), checked);
    EXPECT_EQ(CheckOf(thread), checked);
    EXPECT_EQ(CheckOf(sent), unchecked);
    EXPECT_EQ(CheckOf(root), partly);
}

TEST_F(TreeViewCtrl, ChecksEachAncestorWhoseFoldersAreAllChecked)
{
    const HTREEITEM root = Insert(TVI_ROOT, partly);
    const HTREEITEM inbox = Insert(root, partly);
    const HTREEITEM list = Insert(inbox, unchecked);
    Insert(inbox, checked);
    Insert(root, checked);
    ExpandAll(root);

    ClickCheckBox(list);

    EXPECT_EQ(CheckOf(inbox), checked);
    EXPECT_EQ(CheckOf(root), checked);
}

TEST_F(TreeViewCtrl, UnchecksAPartlyCheckedFolderWithAllBelow)
{
    const HTREEITEM root = Insert(TVI_ROOT, partly);
    const HTREEITEM inbox = Insert(root, checked);
    const HTREEITEM sent = Insert(root, unchecked);
    ExpandAll(root);

    ClickCheckBox(root);

    EXPECT_EQ(CheckOf(root), unchecked);
    EXPECT_EQ(CheckOf(inbox), unchecked);
    EXPECT_EQ(CheckOf(sent), unchecked);
}

TEST_F(TreeViewCtrl, UnchecksEachAncestorWhoseFoldersAreAllUnchecked)
{
    const HTREEITEM root = Insert(TVI_ROOT, checked);
    const HTREEITEM inbox = Insert(root, checked);
    ExpandAll(root);

    ClickCheckBox(inbox);

    EXPECT_EQ(CheckOf(inbox), unchecked);
    EXPECT_EQ(CheckOf(root), unchecked);
}

TEST_F(TreeViewCtrl, TakesAFolderWithoutACheckBoxForAChecked)
{
    const HTREEITEM root = Insert(TVI_ROOT, unchecked);
    Insert(root, none);
    const HTREEITEM inbox = Insert(root, unchecked);
    ExpandAll(root);

    ClickCheckBox(inbox);

    EXPECT_EQ(CheckOf(root), checked);
}

TEST_F(TreeViewCtrl, DoesNotCallFoldersUncheckedOneOfWhichHasNoCheckBox)
{
    const HTREEITEM root = Insert(TVI_ROOT, checked);
    Insert(root, none);
    const HTREEITEM inbox = Insert(root, checked);
    ExpandAll(root);

    ClickCheckBox(inbox);

    EXPECT_EQ(CheckOf(root), partly);
}

TEST_F(TreeViewCtrl, SelectsButDoesNotCheckAFolderWhoseTextIsClicked)
{
    const HTREEITEM root = Insert(TVI_ROOT, unchecked);
    const HTREEITEM inbox = Insert(root, unchecked);
    ExpandAll(root);

    ClickOn(inbox, 3);

    EXPECT_EQ(CheckOf(inbox), unchecked);
    EXPECT_EQ(control.GetSelectedItem(), inbox);
}

TEST_F(TreeViewCtrl, TurnsTheSelectedFolderOverByTheSpaceKey)
{
    const HTREEITEM root = Insert();
    const HTREEITEM inbox = Insert(root);
    Insert(root);
    ExpandAll(root);
    control.SelectItem(inbox);

    PressSpace();
    const Check afterOnePress = CheckOf(inbox);
    const Check rootAfterOnePress = CheckOf(root);
    PressSpace();

    EXPECT_EQ(afterOnePress, unchecked);
    EXPECT_EQ(rootAfterOnePress, partly);
    EXPECT_EQ(CheckOf(inbox), checked);
    EXPECT_EQ(control.GetSelectedItem(), inbox) << "the blank was taken for the beginning of a name";
}

TEST_F(TreeViewCtrl, IgnoresTheSpaceKeyWhileNothingIsSelected)
{
    const HTREEITEM root = Insert();
    control.SelectItem(nullptr);

    PressSpace();

    EXPECT_EQ(CheckOf(root), checked);
}

// What a tree must look like after a click, told from its shape alone.
class Model
{
public:
    HTREEITEM Add(HTREEITEM item, HTREEITEM parent)
    {
        parents[item] = parent;
        children[parent].push_back(item);
        checks[item] = checked;
        return item;
    }
    void Click(HTREEITEM item)
    {
        Fill(item, checks[item] == unchecked ? checked : unchecked);
        for (HTREEITEM above = parents[item]; above != TVI_ROOT; above = parents[above])
            checks[above] = Summary(above);
    }

    std::map<HTREEITEM, Check> checks;

private:
    void Fill(HTREEITEM item, Check check)
    {
        checks[item] = check;
        for (const HTREEITEM child : children[item])
            Fill(child, check);
    }
    Check Summary(HTREEITEM item)
    {
        std::map<Check, int> counts;
        for (const HTREEITEM child : children[item])
            ++counts[checks[child]];
        if (counts.size() > 1 || counts.count(partly))
            return partly;
        return counts.begin()->first;
    }

    std::map<HTREEITEM, HTREEITEM> parents;
    std::map<HTREEITEM, std::vector<HTREEITEM>> children;
};

TEST_F(TreeViewCtrl, AgreesWithItsRuleAfterAnyClicks)
{
    std::mt19937 random(20261120);
    Model model;
    std::vector<HTREEITEM> items{model.Add(Insert(), TVI_ROOT)};
    while (items.size() < 40)
    {
        const HTREEITEM parent = items[random() % items.size()];
        items.push_back(model.Add(Insert(parent), parent));
    }
    ExpandAll(items[0]);

    for (int click = 0; click < 300; ++click)
    {
        const HTREEITEM item = items[random() % items.size()];
        ClickCheckBox(item);
        model.Click(item);

        for (const HTREEITEM each : items)
            ASSERT_EQ(CheckOf(each), model.checks[each]) << "after click " << click;
    }
}
}    // namespace
