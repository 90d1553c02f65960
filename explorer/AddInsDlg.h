#pragma once

#include "explorer/AddInList.h"
#include "explorer/resource.h"
#include "win/Dialog.h"
#include "win/ListCtrl.h"

#include <string>

// The list of add-ins, in which each can be loaded and unloaded.
class CAddInsDlg final : public CDialog
{
public:
    CAddInsDlg(AddInList& addIns, const CWnd& parent) : CDialog(IDD_ADD_INS, &parent), addIns(addIns) {}

    const MessageMap& GetMessageMap() const override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;

private:
    void OnLoad();
    void OnUnload();
    LRESULT OnItemChanged(NMHDR& notice);
    void ShowStates();
    void ShowSelection();
    int GetSelection() const;    // -1 when nothing is selected

    AddInList& addIns;
    CListCtrl list;
};

// The state in words: "Loaded", "Not loaded", or "Failed: " with the system's text for the result.
std::wstring DescribeState(const AddIn& addIn);
