#pragma once

#include "ui/ProductDlg.h"
#include "win/ComboBox.h"
#include "win/GdiObject.h"

#include <windows.h>

struct ScanState;

// Takes the time span, the criteria and the action of a run, and opens the page that runs it.
class CDuplicateSettingsDlg : public CProductDlg
{
public:
    // Both are borrowed for the dialog's life. The choices are added to what `settings` holds: none is
    // cleared. `closeOwner` becomes 1 when the page before is to close as well: after a run.
    CDuplicateSettingsDlg(ScanState& settings, LONG& closeOwner, const CWnd* parent = nullptr);

    const MessageMap& GetMessageMap() const override;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange& exchange) override;
    HBRUSH CtlColor(HDC context, HWND control) override;
    void OnOK() override;
    void OnCancel() override;

private:
    void OnCloseBox();
    void OnActionChanged();
    void OnSelectDestination();

    void FillTimeSpans() const;
    void FillActions() const;
    void ShowDestination() const;
    LONG IsChecked(int checkBox) const;
    void TakeCriteria() const;
    bool TakeAction() const;    // false when it lacks a destination folder
    void AskForDestination(HWND focus);
    void BecomeIdle(HWND focus);
    void RunProcess();

    ScanState& settings;
    LONG& closeOwner;
    LONG busy = 0;    // 1 from "Run Process" on
    CComboBox timeSpan;
    CComboBox action;
    COLORREF listBackground;
    BrushHandle listBrush;
};
