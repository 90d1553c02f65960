#include "win/Wnd.h"

#include "win/WindowBoundary.h"

#include <utility>

namespace
{
constexpr UINT runCall = WM_APP + 0x0700;

// A call on its way to the window's thread; lies on the stack of the thread that waits.
struct CallInTransit
{
    const std::function<void()>& call;
    bool done = false;
};
}    // namespace

CWnd::~CWnd()
{
    Unsubclass();
}

void CWnd::SubclassWindow(HWND existing)
{
    window = existing;
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    own = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWnd::Procedure)));
}

void CWnd::Unsubclass() noexcept
{
    if (!own)
        return;
    ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own));
    ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    own = nullptr;
}

LRESULT CALLBACK CWnd::Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept
{
    auto& target = *reinterpret_cast<CWnd*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    LRESULT result = 0;
    WindowBoundary(window, [&] { result = target.Dispatch({id, wParam, lParam}); });
    return result;
}

LRESULT CWnd::Dispatch(const Message& message)
{
    if (message.id == WM_NCDESTROY)
    {
        const WNDPROC last = own;
        const HWND leaving = window;
        Unsubclass();
        window = nullptr;
        const LRESULT result = ::CallWindowProcW(last, leaving, message.id, message.wParam, message.lParam);
        PostNcDestroy();
        return result;
    }

    if (message.id == runCall)
    {
        RunCall(message.lParam);
        return 0;
    }

    // A handler may send messages to its own window: each stands for itself.
    struct Restore
    {
        const Message*& place;
        const Message* outer;
        ~Restore() { place = outer; }
    } restore{current, std::exchange(current, &message)};
    return WindowProc(message);
}

LRESULT CWnd::WindowProc(const Message& message)
{
    const MessageHandler* handler = GetMessageMap().Find(message);
    return handler ? handler->call(*this, message) : CallWindow(message);
}

LRESULT CWnd::Default()
{
    return CallWindow(*current);
}

LRESULT CWnd::CallWindow(const Message& message)
{
    return ::CallWindowProcW(own, window, message.id, message.wParam, message.lParam);
}

void CWnd::Invoke(const std::function<void()>& call)
{
    CallInTransit transit{call};
    const auto address = reinterpret_cast<LPARAM>(&transit);
    expectedCall = address;
    SendMessage(runCall, 0, address);
    if (!transit.done)
        call();
}

void CWnd::RunCall(LPARAM call)
{
    // Any program may send this message: only the address that is expected is one.
    if (!expectedCall.compare_exchange_strong(call, 0))
        return;
    auto& transit = *reinterpret_cast<CallInTransit*>(call);
    transit.done = true;
    transit.call();
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessageW(window, message, wParam, lParam);
}

HWND CWnd::GetDlgItem(int id) const
{
    return ::GetDlgItem(window, id);
}

void CWnd::EnableWindow(bool enabled) const
{
    ::EnableWindow(window, enabled);
}

void CWnd::ShowWindow(int command) const
{
    ::ShowWindow(window, command);
}

void CWnd::SetWindowText(const std::wstring& text) const
{
    ::SetWindowTextW(window, text.c_str());
}

std::wstring CWnd::GetWindowText() const
{
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

int CWnd::MessageBox(const std::wstring& text, const std::wstring& caption, UINT type) const
{
    return ::MessageBoxW(window, text.c_str(), caption.c_str(), type);
}
