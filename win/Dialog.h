#pragma once

#include "win/Wnd.h"

#include <windows.h>

class CDataExchange;

// A modal dialog made from a template among our module's resources, under common controls 6.
// Made, run and destroyed on one thread, which need not be its owner's.
class CDialog : public CWnd
{
public:
    // Without a parent the active window of the running thread becomes the owner, so that the page beneath
    // cannot be used meanwhile.
    explicit CDialog(UINT templateId, const CWnd* parent = nullptr);

    // Shows the dialog and returns when it ends, with what it was ended with (IDOK, IDCANCEL, ...); IDCANCEL
    // when its window was destroyed. COleException when it cannot be made.
    INT_PTR DoModal();
    void EndDialog(INT_PTR result);

    const MessageMap& GetMessageMap() const override;

protected:
    // Before the dialog is shown; nonzero lets the system choose the first focus. To be called by overrides
    // first: it puts the values into the controls.
    virtual BOOL OnInitDialog();
    virtual void OnOK();        // takes the values out of the controls, then ends with IDOK
    virtual void OnCancel();    // ends with IDCANCEL
    void PostNcDestroy() override;
    virtual void DoDataExchange(CDataExchange& exchange);    // nothing to exchange

private:
    static INT_PTR CALLBACK DialogProcedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept;
    HWND FindOwner() const;

    UINT templateId;
    const CWnd* parent;
    bool initialised = false;    // the window was there in this run
};
