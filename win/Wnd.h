#pragma once

#include "win/CmdTarget.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>

// A window: attached to one, it sends it messages; subclassed, it answers the window's own messages by its
// message map as well. Never owns the window. Used on the window's thread, but for what only sends messages,
// which any thread may call: the system carries a message to the window's thread and waits.
class CWnd : public CCmdTarget
{
public:
    CWnd() = default;
    ~CWnd() override;    // takes itself off a subclassed window

    HWND GetSafeHwnd() const noexcept { return window; }    // borrowed; null when there is none (any more)
    void Attach(HWND existing) noexcept { window = existing; }
    void SubclassWindow(HWND existing);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    HWND GetDlgItem(int id) const;
    void EnableWindow(bool enabled = true) const;
    void ShowWindow(int command) const;    // SW_...
    void SetWindowText(const std::wstring& text) const;
    std::wstring GetWindowText() const;

    // The standard message box, owned by this window; the button pressed (IDOK, IDYES, ...).
    int MessageBox(const std::wstring& text, const std::wstring& caption, UINT type) const;

    // Has `call` run on the window's thread and returns when it has; on this one when the window has gone.
    // The call may lead to this object's end: it is not touched afterwards. For a subclassed window, and one
    // other thread at a time.
    void Invoke(const std::function<void()>& call);

protected:
    virtual LRESULT WindowProc(const Message& message);
    virtual void PostNcDestroy() {}    // the window has gone

    // To be called by a handler: lets the window do what it does with this message of its own accord.
    LRESULT Default();

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT Dispatch(const Message& message);
    LRESULT CallWindow(const Message& message);
    void RunCall(LPARAM call);
    void Unsubclass() noexcept;

    HWND window = nullptr;
    WNDPROC own = nullptr;                  // the window's own procedure, while it is subclassed
    const Message* current = nullptr;       // what is being handled now
    std::atomic<LPARAM> expectedCall{0};    // set by the thread that waits for it
};
