#pragma once

#include "ui/ProductDlg.h"
#include "ui/TextLines.h"
#include "win/ListCtrl.h"

// Shows the licence agreement that lies in the installation folder, a row for each line. Without such a file
// it shows none.
class CMyEULADlg : public CProductDlg
{
public:
    explicit CMyEULADlg(const CWnd* parent = nullptr);

    const MessageMap& GetMessageMap() const override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;

private:
    LRESULT GiveRowText(NMHDR& notice);
    LRESULT FindRow(NMHDR& notice);
    LRESULT DrawRow(NMHDR& notice);

    TextLines lines;
    CListCtrl list;
};
