#include "explorer/FolderPane.h"

#include "explorer/resource.h"
#include "win/RedrawPause.h"
#include "win/ThisModule.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

namespace
{
std::wstring CaptionOf(const MailFolder& folder)
{
    return folder.unread > 0 ? folder.name + L" (" + std::to_wstring(folder.unread) + L')' : folder.name;
}
}    // namespace

void FolderPane::Create(HWND parent)
{
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TVS_HASBUTTONS |
                            TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS;
    Attach(::CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"Folders", style, 0, 0, 0, 0, parent,
                             reinterpret_cast<HMENU>(IDC_FOLDERS), ThisModule(), nullptr));
}

void FolderPane::Show(std::vector<MailFolder> shown)
{
    const MailFolder* selected = GetSelected();
    const EntryId kept = selected ? selected->id : EntryId();
    HTREEITEM chosen = nullptr;
    {
        const RedrawPause pause(*this);
        Clear();
        folders = std::move(shown);
        chosen = InsertFolders(kept);
        for (HTREEITEM item = GetRootItem(); item; item = GetNextSiblingItem(item))
            Expand(item);
    }
    SelectItem(chosen ? chosen : GetRootItem());
}

HTREEITEM FolderPane::InsertFolders(const EntryId& sought)
{
    std::vector<HTREEITEM> path;    // the item last added at each depth
    HTREEITEM found = nullptr;
    for (std::size_t i = 0; i < folders.size(); ++i)
    {
        const auto depth = std::min(static_cast<std::size_t>(std::max(folders[i].depth, 0L)), path.size());
        path.resize(depth);
        const HTREEITEM item = InsertItem(CaptionOf(folders[i]), 0, 0, path.empty() ? TVI_ROOT : path.back());
        path.push_back(item);
        TVITEMW place{};
        place.mask = TVIF_PARAM;
        place.hItem = item;
        place.lParam = static_cast<LPARAM>(i);
        SendMessage(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&place));
        if (folders[i].unread > 0)
            SetItemState(item, TVIS_BOLD, TVIS_BOLD);
        if (!sought.empty() && folders[i].id == sought)
            found = item;
    }
    return found;
}

void FolderPane::Clear()
{
    // Whoever is told that the selection goes should find none.
    folders.clear();
    SelectItem(nullptr);
    DeleteAllItems();
}

const MailFolder* FolderPane::GetSelected() const
{
    TVITEMW place{};
    place.mask = TVIF_PARAM;
    place.hItem = GetSelectedItem();
    if (!place.hItem || !SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&place)))
        return nullptr;
    const auto index = static_cast<std::size_t>(place.lParam);
    return index < folders.size() ? &folders[index] : nullptr;
}
