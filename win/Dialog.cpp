#include "win/Dialog.h"

#include "win/ActivationContext.h"
#include "win/DataExchange.h"
#include "win/OleException.h"
#include "win/ThisModule.h"
#include "win/WindowBoundary.h"

CDialog::CDialog(UINT templateId, const CWnd* parent) : templateId(templateId), parent(parent) {}

INT_PTR CDialog::DoModal()
{
    const ActivationContext commonControls;
    initialised = false;
    const INT_PTR result = ::DialogBoxParamW(ThisModule(), MAKEINTRESOURCEW(templateId), FindOwner(),
                                             &CDialog::DialogProcedure, reinterpret_cast<LPARAM>(this));
    if (!initialised)
        throw COleException(HRESULT_FROM_WIN32(::GetLastError()));
    // Not a button's id: the window was destroyed, as with its owner.
    return result > 0 ? result : IDCANCEL;
}

HWND CDialog::FindOwner() const
{
    if (parent)
        return parent->GetSafeHwnd();
    const HWND active = ::GetActiveWindow();
    return active ? ::GetLastActivePopup(::GetAncestor(active, GA_ROOT)) : nullptr;
}

void CDialog::EndDialog(INT_PTR result)
{
    ::EndDialog(GetSafeHwnd(), result);
}

INT_PTR CALLBACK CDialog::DialogProcedure(HWND window, UINT id, WPARAM, LPARAM lParam) noexcept
{
    // All that follows this message arrives through the message map.
    if (id != WM_INITDIALOG)
        return FALSE;
    auto& dialog = *reinterpret_cast<CDialog*>(lParam);
    BOOL chooseFocus = TRUE;
    const bool ready = WindowBoundary(window,
                                      [&]
                                      {
                                          dialog.initialised = true;
                                          dialog.SubclassWindow(window);
                                          chooseFocus = dialog.OnInitDialog();
                                      });
    if (!ready)
        ::EndDialog(window, IDCANCEL);
    return chooseFocus;
}

const MessageMap& CDialog::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCommand<&CDialog::OnOK>(IDOK),
        OnCommand<&CDialog::OnCancel>(IDCANCEL),
    };
    static const MessageMap map{&CWnd::GetMessageMap(), handlers};
    return map;
}

BOOL CDialog::OnInitDialog()
{
    CDataExchange exchange(*this, CDataExchange::toControls);
    DoDataExchange(exchange);
    return TRUE;
}

void CDialog::OnOK()
{
    CDataExchange exchange(*this, CDataExchange::fromControls);
    DoDataExchange(exchange);
    EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

void CDialog::PostNcDestroy()
{
    // The system's modal loop looks for its dialog only after a message from the queue: one has to come,
    // should the window have been destroyed by a message that another thread sent.
    ::PostThreadMessageW(::GetCurrentThreadId(), WM_NULL, 0, 0);
}

void CDialog::DoDataExchange(CDataExchange&) {}
