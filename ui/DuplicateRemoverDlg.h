#pragma once

#include "engine/ScanState.h"
#include "ui/HelpTopic.h"
#include "ui/ProductDlg.h"
#include "ui/TreeControlView.h"
#include "ui/TreeViewCtrl.h"
#include "win/ComInitialization.h"
#include "win/ImageList.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

// The first page: logs on to the mail store, shows its folders with check boxes, and leads to the settings.
// Owns the state that the other pages and the worker thread share. Closing while the folders are read asks
// before it stops the reading; destroyed all the same, the dialog stops it and waits.
class CDuplicateRemoverDlg : public CProductDlg, public TreeControlView
{
public:
    using HelpViewer = std::function<void(HWND owner, const std::wstring& file)>;

    // Made without a parent; `exchangeProfile` as the MAPI helper has found the profile.
    explicit CDuplicateRemoverDlg(bool exchangeProfile, HelpViewer showHelp = &ShowHelpTopic);
    ~CDuplicateRemoverDlg() override;

    const MessageMap& GetMessageMap() const override;

    void Close() override;
    void FinishLoading(const std::function<void()>& endJob) override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;
    void OnOK() override;    // "Next"
    void OnCancel() override;

private:
    void OpenSession();
    void ShowImages();
    void ShowNotice();
    void LoadFolders();

    bool IsAnyFolderTicked() const;
    void OpenSettings();
    void OnCloseBox();
    void OnAbout();
    void OnHelp();

    HelpViewer showHelp;
    std::optional<ComInitialization> com;    // outlives everything of the store's
    ScanState state;
    CImageList checkImages;
    CImageList folderImages;
    CTreeViewCtrl tree;
};
