#pragma once

#include "res/resource.h"
#include "tests/engine/ScanFixture.h"
#include "tests/ui/ModalDriver.h"
#include "ui/SelectFolderDlg.h"
#include "ui/TreeControlView.h"
#include "win/TreeCtrl.h"

#include <windows.h>

#include <functional>
#include <list>
#include <string>
#include <vector>

// The picker of the destination folder, over records of a fake store's folders, and its user.
class DestinationPicker : public ScanFixture
{
protected:
    using Texts = std::vector<std::wstring>;
    using UserOfPicker = std::function<void(ModalDriver& user, HWND picker)>;

    const std::wstring title = L"Talmore Quorvex Outlook Duplicate Remover";

    // The root folder of another store, with a record of its own.
    FakeFolder& AddStore(const std::wstring& name, LONG itemType = 0)
    {
        FakeFolder& root = otherRoots.emplace_back();
        root.name = name;
        root.itemType = itemType;
        root.id = L"57" + std::to_wstring(otherRoots.size());
        AddRecord(root, 1);
        return root;
    }
    FakeFolder& AddFolder(FakeFolder& parent, const std::wstring& name, LONG itemType = 0)
    {
        FakeFolder& folder = parent.AddFolder(name, itemType);
        AddRecord(folder, 0);
        return folder;
    }
    FOLDER_INFO& AddRecord(FakeFolder& folder, LONG topLevel)
    {
        FOLDER_INFO record;
        record.folder = store.MakeFolder(folder);
        record.name = folder.name;
        record.entryId = folder.id;
        record.parentEntryId = folder.parent ? folder.parent->id : std::wstring();
        record.topLevel = topLevel;
        return state.folders.emplace_back(record);
    }

    // Shows the picker while `script` uses it; returns what it ended with.
    INT_PTR Use(const UserOfPicker& script)
    {
        ModalDriver user([&](ModalDriver& self)
                         { script(self, self.WaitForDialog(title, IDC_DESTINATION_TREE)); });
        CSelectFolderDlg dialog(state);
        const INT_PTR result = dialog.DoModal();
        user.Join();
        return result;
    }
    // Looks at it, then cancels it.
    void Look(const std::function<void(HWND picker, const CTreeCtrl& tree)>& look)
    {
        Use(
            [&](ModalDriver& user, HWND picker)
            {
                look(picker, TreeOf(picker));
                user.Click(picker, IDCANCEL);
            });
    }

    static CTreeCtrl& TreeOf(HWND picker)
    {
        static CTreeCtrl tree;
        tree.Attach(::GetDlgItem(picker, IDC_DESTINATION_TREE));
        return tree;
    }
    static Texts ChildTextsOf(const CTreeCtrl& tree, HTREEITEM item)
    {
        Texts texts;
        for (HTREEITEM child = item ? tree.GetChildItem(item) : tree.GetRootItem(); child;
             child = tree.GetNextSiblingItem(child))
            texts.push_back(tree.GetItemText(child));
        return texts;
    }
    // The item that the texts lead to from the root; null when there is none.
    static HTREEITEM ItemAt(const CTreeCtrl& tree, const Texts& path)
    {
        HTREEITEM item = nullptr;
        for (const std::wstring& text : path)
        {
            item = item ? tree.GetChildItem(item) : tree.GetRootItem();
            while (item && tree.GetItemText(item) != text)
                item = tree.GetNextSiblingItem(item);
            if (!item)
                break;
        }
        return item;
    }
    static void Select(HWND picker, const Texts& path)
    {
        const HTREEITEM item = ItemAt(TreeOf(picker), path);
        ASSERT_NE(item, nullptr);
        TreeOf(picker).SelectItem(item);
    }
    static bool IsOkEnabled(HWND picker) { return ::IsWindowEnabled(::GetDlgItem(picker, IDOK)) != FALSE; }
    bool HasDestination() const { return state.destFolder || !state.destFolderPath.empty(); }

private:
    std::list<FakeFolder> otherRoots;
};
