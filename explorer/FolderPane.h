#pragma once

#include "explorer/mail/MailStore.h"
#include "win/TreeCtrl.h"

#include <windows.h>

#include <vector>

// The tree of the store's folders; those with unread messages are bold and say how many.
class FolderPane : public CTreeCtrl
{
public:
    void Create(HWND parent);
    void Show(std::vector<MailFolder> folders);    // keeps the selection where its folder is still there
    void Clear();

    const MailFolder* GetSelected() const;    // borrowed; null when none is

private:
    HTREEITEM InsertFolders(const EntryId& sought);    // gives the item of that folder; null without one

    std::vector<MailFolder> folders;
};
