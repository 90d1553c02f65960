#pragma once

#include "ui/ProductDlg.h"
#include "win/ImageList.h"
#include "win/TreeCtrl.h"

#include <windows.h>

struct FOLDER_INFO;
struct ScanState;

// Lets the user pick the folder that duplicates are copied or moved to, among the folders that have been
// listed already; one that holds no mail cannot be picked. Leaves the choice in destFolder and
// destFolderPath, both empty unless the dialog was ended with OK, and its own tree's items in the records.
class CSelectFolderDlg : public CProductDlg
{
public:
    // `settings` is borrowed for the dialog's life.
    explicit CSelectFolderDlg(ScanState& settings, const CWnd* parent = nullptr);

    const MessageMap& GetMessageMap() const override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;
    void OnCancel() override;
    LRESULT WindowProc(const Message& message) override;

private:
    void OnCloseBox();
    LRESULT OnSelectionChanged(NMHDR& notice);

    void BuildTree() const;
    HTREEITEM InsertFolder(const FOLDER_INFO& record) const;
    HTREEITEM ParentItemOf(const FOLDER_INFO& record) const;
    void Choose(const FOLDER_INFO& record) const;
    void ForgetDestination() const;

    ScanState& settings;
    CTreeCtrl tree;
    CImageList images;
    bool choosing = false;    // a change of the selection is the user's
};
