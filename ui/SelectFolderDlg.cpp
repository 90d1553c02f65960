#include "ui/SelectFolderDlg.h"

#include "engine/FolderTree.h"
#include "engine/ScanState.h"
#include "res/resource.h"
#include "ui/FolderImages.h"
#include "ui/TreeControlView.h"
#include "win/DataExchange.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

CSelectFolderDlg::CSelectFolderDlg(ScanState& settings, const CWnd* parent)
    : CProductDlg(IDD_SELECT_FOLDER, parent, {IDC_DESTINATION_GROUP}),
      settings(settings)
{
}

const MessageMap& CSelectFolderDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnClose<&CSelectFolderDlg::OnCloseBox>(),
        OnNotify<&CSelectFolderDlg::OnSelectionChanged>(IDC_DESTINATION_TREE, TVN_SELCHANGEDW),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

void CSelectFolderDlg::DoDataExchange(CDataExchange& exchange)
{
    exchange.Control(IDC_DESTINATION_TREE, tree);
}

BOOL CSelectFolderDlg::OnInitDialog()
{
    CProductDlg::OnInitDialog();
    images = MakeFolderImages();
    tree.SetImageList(images.get(), TVSIL_NORMAL);
    tree.SetBkColor(RGB(255, 255, 255));
    BuildTree();
    choosing = true;
    return TRUE;
}

LRESULT CSelectFolderDlg::WindowProc(const Message& message)
{
    // A tree that goes may pass its selection on from item to item as it deletes them.
    if (message.id == WM_DESTROY)
        choosing = false;
    return CProductDlg::WindowProc(message);
}

void CSelectFolderDlg::BuildTree() const
{
    // Items of another tree are none of this one's, should a record stand before its parent.
    for (FOLDER_INFO& record : settings.folders)
        record.treeItem = TreeItem::none;

    HTREEITEM lastTopLevel = nullptr;
    for (FOLDER_INFO& record : settings.folders)
    {
        const HTREEITEM item = InsertFolder(record);
        record.treeItem = ToTreeItem(item);
        if (record.topLevel)
            lastTopLevel = item;
    }
    if (!lastTopLevel)
        return;
    ExpandTreeBranch(tree, lastTopLevel);
    tree.EnsureVisible(lastTopLevel);
}

HTREEITEM CSelectFolderDlg::InsertFolder(const FOLDER_INFO& record) const
{
    const int image = FolderImage(record.folder.GetDefaultItemType());
    if (record.topLevel)
        return tree.InsertItem(record.name, image, image, TVI_ROOT, TVI_SORT);
    return tree.InsertItem(record.name, image, image, ParentItemOf(record), TVI_LAST);
}

HTREEITEM CSelectFolderDlg::ParentItemOf(const FOLDER_INFO& record) const
{
    const auto parent =
        std::find_if(settings.folders.begin(), settings.folders.end(),
                     [&](const FOLDER_INFO& candidate) { return candidate.entryId == record.parentEntryId; });
    const bool drawn = parent != settings.folders.end() && parent->treeItem != TreeItem::none;
    return drawn ? ToHandle(parent->treeItem) : TVI_ROOT;
}

LRESULT CSelectFolderDlg::OnSelectionChanged(NMHDR&)
{
    const TreeItem selected = ToTreeItem(tree.GetSelectedItem());
    if (!choosing || selected == TreeItem::none)
        return 0;
    for (const FOLDER_INFO& record : settings.folders)
        if (record.treeItem == selected)
            Choose(record);
    return 0;
}

void CSelectFolderDlg::Choose(const FOLDER_INFO& record) const
{
    // Before the store is asked: should it not answer, the folder selected before must not stay chosen.
    ForgetDestination();
    const bool holdsMail = record.folder.GetDefaultItemType() == mailItems;
    if (holdsMail)
    {
        settings.destFolder = record.folder;
        settings.destFolderPath = record.name;
    }
    ::EnableWindow(GetDlgItem(IDOK), holdsMail);
}

void CSelectFolderDlg::ForgetDestination() const
{
    ::EnableWindow(GetDlgItem(IDOK), FALSE);
    settings.destFolder.ReleaseDispatch();
    settings.destFolderPath.clear();
}

void CSelectFolderDlg::OnCancel()
{
    ForgetDestination();
    CProductDlg::OnCancel();
}

void CSelectFolderDlg::OnCloseBox()
{
    ForgetDestination();
    Default();
}
