#pragma once

#include "win/Dialog.h"
#include "win/GdiObject.h"

#include <windows.h>

#include <initializer_list>
#include <vector>

// The look that all the product's dialogs share: a light-yellow background, and captions of group boxes in
// blue.
class CProductDlg : public CDialog
{
public:
    const MessageMap& GetMessageMap() const override;

protected:
    // `blueCaptions` are the ids of the group boxes.
    CProductDlg(UINT templateId, const CWnd* parent, std::initializer_list<int> blueCaptions = {});

    BOOL OnInitDialog() override;

    // What `control`, or the dialog itself, is drawn with: sets the colours of texts in `context` and returns
    // the background's brush, which stays the dialog's.
    virtual HBRUSH CtlColor(HDC context, HWND control);

private:
    LRESULT DeletePictures(WPARAM, LPARAM);

    std::vector<int> blueCaptions;
    COLORREF background;
    BrushHandle backgroundBrush;
};
