#include "engine/FolderTree.h"

#include "win/OleException.h"

#include <string>
#include <utility>

namespace
{
// What is read of a folder before its item is drawn.
struct FolderFacts
{
    CFolderCollection folders;
    std::wstring name;
    LONG itemType = mailItems;
    LONG itemCount = 0;
};

FolderFacts ReadFacts(const CFolder& folder)
{
    FolderFacts facts;
    facts.folders = folder.GetFolders();
    facts.name = folder.GetName();
    const CItemCollection items = folder.GetItems();
    facts.itemType = folder.GetDefaultItemType();
    facts.itemCount = items ? items.GetCount() : 0;
    return facts;
}

// A folder that does not tell an id keeps its place in tree and list, so that the two agree.
std::wstring EntryIdOrNothing(const CFolder& folder)
{
    try
    {
        return folder.GetEntryId();
    }
    catch (const COleException&)
    {
        return {};
    }
}

std::wstring ParentEntryIdOrNothing(const CFolder& folder)
{
    try
    {
        const CFolder parent = folder.GetParent();
        return parent ? parent.GetEntryId() : std::wstring();
    }
    catch (const COleException&)
    {
        return {};
    }
}

TreeItem DrawFolder(FolderTreeView& view, TreeItem parentItem, bool first, const FolderFacts& facts)
{
    const std::wstring text =
        facts.itemCount != 0 ? facts.name + L"(" + std::to_wstring(facts.itemCount) + L")" : facts.name;
    const int image = FolderImage(facts.itemType);
    const TreeItem item =
        first ? view.InsertItem(TreeItem::none, FolderTreeView::Place::sorted, text, image, image)
              : view.InsertItem(parentItem, FolderTreeView::Place::last, text, image, image);
    view.SetCheckState(item, CheckState::checked);
    return item;
}

void AppendRecord(ScanState& state, const CFolder& folder, TreeItem item, const std::wstring& name,
                  bool first)
{
    FOLDER_INFO record;
    record.folder = folder;
    record.treeItem = item;
    record.checkItem = item;
    record.selected = 1;
    record.name = name;
    record.entryId = EntryIdOrNothing(folder);
    record.parentEntryId = ParentEntryIdOrNothing(folder);
    record.topLevel = first ? 1 : 0;
    state.folders.push_back(std::move(record));
}

TreeItem AddFolder(ScanState& state, FolderTreeView& view, const CFolder& folder, TreeItem parentItem,
                   const FolderFacts& facts)
{
    const bool first = state.folders.empty();
    const TreeItem item = DrawFolder(view, parentItem, first, facts);
    if (first)
        state.treeRootItem = item;
    AppendRecord(state, folder, item, facts.name, first);
    if (facts.itemType != mailItems)
        view.SetGreyed(item);
    if (facts.itemCount > 0)
        view.SetBold(item);
    return item;
}

LONG CountOrNone(const CFolderCollection& folders)
{
    try
    {
        return folders ? folders.GetCount() : 0;
    }
    catch (const COleException&)
    {
        return 0;
    }
}

CFolder SubFolderOrNone(const CFolderCollection& folders, LONG index)
{
    try
    {
        return folders.GetItem(index);
    }
    catch (const COleException&)
    {
        return {};
    }
}
}    // namespace

LONG OpenDefaultStore(ScanState& state)
{
    try
    {
        const CStore store = state.storeSession.GetStores().GetDefaultStore();
        state.storeEntryId = store.GetEntryId();
        state.folderRoot = store.GetRootFolder();
    }
    catch (const COleException&)
    {
        // The caller's answer to a store that cannot be opened is the same whatever it failed with.
        return 0;
    }
    return state.folderRoot ? 1 : 0;
}

void EnumerateFolder(ScanState& state, FolderTreeView& view, const CFolder& folder, TreeItem parentItem)
{
    FolderFacts facts;
    try
    {
        if (!folder)
            return;
        facts = ReadFacts(folder);
    }
    catch (const COleException&)
    {
        // One folder that cannot be read must not cost the user all others.
        return;
    }

    const TreeItem item = AddFolder(state, view, folder, parentItem, facts);
    const LONG count = CountOrNone(facts.folders);
    for (LONG i = 1; i <= count && !state.stopRequested; ++i)
        EnumerateFolder(state, view, SubFolderOrNone(facts.folders, i), item);
}

void MarkSelectedFolders(ScanState& state, const FolderTreeView& view)
{
    for (FOLDER_INFO& record : state.folders)
    {
        if (state.stopRequested == 1)
            return;
        const CheckState check = view.GetCheckState(record.checkItem);
        record.selected = check == CheckState::checked || check == CheckState::partlyChecked ? 1 : 0;
    }
}

int FolderImage(LONG defaultItemType)
{
    switch (defaultItemType)
    {
    case 1:    // appointments
        return 5;
    case 2:    // contacts
    case 7:    // distribution lists
        return 6;
    case 3:    // tasks
        return 9;
    case 4:    // journal
        return 7;
    case 5:    // notes
        return 8;
    default:
        return 10;
    }
}
