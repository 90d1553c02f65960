#pragma once

#include "tests/win/TestDialogs.h"
#include "win/DataExchange.h"
#include "win/Dialog.h"

#include <functional>
#include <string>

// A dialog that does what a test says once it is there, then lets the messages posted by then run.
class CTestDialog : public CDialog
{
public:
    explicit CTestDialog(const CWnd* parent = nullptr) : CDialog(IDD_TEST, parent) {}

    std::wstring text;
    std::function<void(CTestDialog&)> whenShown;
    CWnd edit;

    void Post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        ::PostMessageW(GetSafeHwnd(), message, wParam, lParam);
    }
    void PostClick(int control) const
    {
        Post(WM_COMMAND, MAKEWPARAM(control, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(control)));
    }

protected:
    BOOL OnInitDialog() override
    {
        const BOOL result = CDialog::OnInitDialog();
        if (whenShown)
            whenShown(*this);
        return result;
    }
    void DoDataExchange(CDataExchange& exchange) override
    {
        exchange.Control(IDC_TEST_EDIT, edit);
        exchange.Text(IDC_TEST_EDIT, text);
    }
};
