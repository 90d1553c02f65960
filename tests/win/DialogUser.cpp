#include "tests/win/DialogUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <utility>

namespace
{
constexpr wchar_t dialogClass[] = L"#32770";

bool HasClass(HWND window, const wchar_t* expected)
{
    wchar_t actual[64] = L"";
    ::GetClassNameW(window, actual, ARRAYSIZE(actual));
    return std::wcscmp(actual, expected) == 0;
}

struct Search
{
    const wchar_t* windowClass;
    HWND found;
};

BOOL CALLBACK TakeVisible(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (!::IsWindowVisible(window) || !HasClass(window, search.windowClass))
        return TRUE;
    search.found = window;
    return FALSE;
}
}    // namespace

DialogUser* DialogUser::current = nullptr;

DialogUser::DialogUser(Script script)
    : windowHook(::SetWindowsHookExW(WH_CBT, &OnWindow, nullptr, ::GetCurrentThreadId())),
      messageHook(::SetWindowsHookExW(WH_GETMESSAGE, &OnMessage, nullptr, ::GetCurrentThreadId())),
      thread([this, script = std::move(script)] { Run(script); })
{
    current = this;
}

DialogUser::~DialogUser()
{
    {
        const std::lock_guard guard(lock);
        over = true;
    }
    changed.notify_all();
    thread.join();
    ::UnhookWindowsHookEx(messageHook);
    ::UnhookWindowsHookEx(windowHook);
    current = nullptr;
}

LRESULT CALLBACK DialogUser::OnWindow(int code, WPARAM window, LPARAM details)
{
    const HWND dialog = reinterpret_cast<HWND>(window);
    // The dialog is being made yet. It is ready for its user when its loop takes up this message.
    if (code == HCBT_ACTIVATE && HasClass(dialog, dialogClass))
        ::PostMessageW(dialog, WM_NULL, 0, 0);
    if (code == HCBT_DESTROYWND)
        current->Forget(dialog);
    return ::CallNextHookEx(nullptr, code, window, details);
}

LRESULT CALLBACK DialogUser::OnMessage(int code, WPARAM removed, LPARAM message)
{
    const MSG& taken = *reinterpret_cast<const MSG*>(message);
    if (code == HC_ACTION && removed == PM_REMOVE && taken.message == WM_NULL &&
        HasClass(taken.hwnd, dialogClass))
    {
        if (::IsWindowVisible(taken.hwnd))
            current->Notice(taken.hwnd);
        else
            ::PostMessageW(taken.hwnd, WM_NULL, 0, 0);
    }
    return ::CallNextHookEx(nullptr, code, removed, message);
}

void DialogUser::Notice(HWND dialog)
{
    const std::lock_guard guard(lock);
    if (std::ranges::find(dialogs, dialog) == dialogs.end())
        dialogs.push_back(dialog);
    changed.notify_all();
}

void DialogUser::Run(const Script& script)
{
    script(*this);

    std::unique_lock guard(lock);
    if (changed.wait_for(guard, patience, [this] { return over; }))
        return;
    ADD_FAILURE() << "a dialog was left open";
    for (auto dialog = dialogs.rbegin(); dialog != dialogs.rend(); ++dialog)
        Press(*dialog, IDCANCEL);
}

void DialogUser::Forget(HWND window)
{
    const std::lock_guard guard(lock);
    std::ranges::replace(dialogs, window, HWND{});
}

HWND DialogUser::NextDialog()
{
    std::unique_lock guard(lock);
    if (changed.wait_for(guard, patience, [this] { return over || dialogs.size() > taken; }) &&
        dialogs.size() > taken)
        return dialogs[taken++];
    ADD_FAILURE() << "no dialog was shown";
    return nullptr;
}

HWND DialogUser::Find(HWND dialog, const wchar_t* windowClass)
{
    Search search{windowClass, nullptr};
    ::EnumChildWindows(dialog, &TakeVisible, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void DialogUser::Type(HWND dialog, const std::wstring& text)
{
    ::SendMessageW(Find(dialog, L"Edit"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void DialogUser::Press(HWND dialog, int button)
{
    // Not sent: the press may show a dialog and return after that only.
    ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(dialog, button)));
}

std::wstring DialogUser::TextOf(HWND window)
{
    wchar_t text[1024] = L"";
    ::SendMessageW(window, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
    return text;
}
