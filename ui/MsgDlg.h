#pragma once

#include "ui/ProductDlg.h"

#include <string>

// The product's own message box: one text, with line feeds as line ends, and an OK button.
class CMsgDlg : public CProductDlg
{
public:
    explicit CMsgDlg(const CWnd* parent = nullptr);

    std::wstring message;

protected:
    void DoDataExchange(CDataExchange& exchange) override;
};
