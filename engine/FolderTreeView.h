#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Names one item of a folder tree view; only the view that gave it knows what it stands for.
enum class TreeItem : std::uintptr_t
{
    none = 0
};

// The state-image index of a folder's item. A folder is selected when it is checked or partly checked.
enum class CheckState : int
{
    none = 0,
    unchecked = 1,
    checked = 2,
    partlyChecked = 3
};

// Whatever shows the folder tree while the engine loads it: the main dialog, a console, a test.
// Called on the engine's thread only; the view carries each call to its own thread before it returns.
class FolderTreeView
{
public:
    enum class Place
    {
        last,     // behind the parent's other children
        sorted    // among them, by text
    };

    virtual ~FolderTreeView() = default;

    // The new item, below `parent`, or at the root of the tree when that is none. Images are indexes into the
    // folder image list (FolderImage in engine/FolderTree.h).
    virtual TreeItem InsertItem(TreeItem parent, Place place, const std::wstring& text, int image,
                                int selectedImage) = 0;
    virtual void SetCheckState(TreeItem item, CheckState state) = 0;
    virtual CheckState GetCheckState(TreeItem item) const = 0;
    virtual void SetBold(TreeItem item) = 0;
    virtual void SetGreyed(TreeItem item) = 0;

    virtual void ExpandBranch(TreeItem item) = 0;    // the item and all below it
    virtual void EnsureVisible(TreeItem item) = 0;

    // There is no store to show: whoever shows the tree is to close. May be refused, and comes back either
    // way.
    virtual void Close() {}
    // Calls `endJob` and shows the tree as complete, both in one go on the view's own thread: nothing that
    // the user does comes between. Afterwards the engine's thread touches neither view nor state.
    virtual void FinishLoading(const std::function<void()>& endJob) { endJob(); }
};
