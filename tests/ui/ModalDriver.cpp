#include "tests/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr UINT answerTimeout = 2000;    // milliseconds

bool IsShownDialogOfThisProcess(HWND window)
{
    DWORD process = 0;
    wchar_t className[8] = L"";
    ::GetWindowThreadProcessId(window, &process);
    ::GetClassNameW(window, className, ARRAYSIZE(className));
    return process == ::GetCurrentProcessId() && ::IsWindowVisible(window) &&
           className == std::wstring_view(L"#32770");
}

BOOL CALLBACK AddShownDialog(HWND window, LPARAM found)
{
    if (IsShownDialogOfThisProcess(window))
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    return TRUE;
}

// Also tells that the thread has come to its message loop, past everything that makes the dialog.
bool AnswersMessages(HWND window)
{
    DWORD_PTR ignored = 0;
    return ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, answerTimeout, &ignored) != 0;
}

bool Poll(const std::function<bool()>& condition, Clock::time_point end)
{
    while (!condition())
    {
        if (Clock::now() > end)
            return false;
        ::Sleep(2);
    }
    return true;
}

HWND FocusedWindowOf(DWORD thread)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(thread, &info) ? info.hwndFocus : nullptr;
}

// A dialog that refuses to go would leave the test hanging: the process ends then.
void CloseAllDialogs()
{
    const auto closed = []
    {
        const std::vector<HWND> dialogs = ShownDialogs();
        std::ranges::for_each(dialogs, &PostCancel);
        ::Sleep(20);
        return dialogs.empty();
    };
    if (Poll(closed, Clock::now() + dialogPatience))
        return;
    std::fputs("a dialog does not close\n", stderr);
    std::abort();
}

UINT RunFunctionMessage()
{
    static const UINT message = ::RegisterWindowMessageW(L"ModalDriver.RunFunction");
    return message;
}

LRESULT CALLBACK RunFunctionHook(int code, WPARAM wParam, LPARAM lParam)
{
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.message == RunFunctionMessage())
        (*reinterpret_cast<const std::function<void()>*>(sent.lParam))();
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}
}    // namespace

ModalDriver::ModalDriver(Script script, std::chrono::milliseconds deadline)
    : script(std::move(script)),
      deadline(deadline),
      thread(&ModalDriver::RunScript, this)
{
}

ModalDriver::~ModalDriver()
{
    Join();
}

void ModalDriver::Join()
{
    if (thread.joinable())
        thread.join();
}

void ModalDriver::RunScript() noexcept
{
    try
    {
        script(*this);
    }
    catch (const std::exception& failure)
    {
        ADD_FAILURE() << failure.what();
        CloseAllDialogs();
    }
}

HWND ModalDriver::WaitForDialog(const std::wstring& caption, int control)
{
    HWND found = nullptr;
    const auto isWanted = [&](HWND window)
    {
        return TextOf(window) == caption && (control == 0 || ::GetDlgItem(window, control)) &&
               std::find(given.begin(), given.end(), window) == given.end() && AnswersMessages(window);
    };
    const auto search = [&]
    {
        // The number of a window that is gone may come again.
        std::erase_if(given, [](HWND window) { return !::IsWindow(window); });
        const std::vector<HWND> dialogs = ShownDialogs();
        const auto wanted = std::find_if(dialogs.begin(), dialogs.end(), isWanted);
        found = wanted != dialogs.end() ? *wanted : nullptr;
        return found != nullptr;
    };
    WaitUntil(search, "a dialog named " + testing::PrintToString(caption));
    given.push_back(found);
    return found;
}

void ModalDriver::WaitForEnd(HWND window)
{
    WaitUntil([&] { return !::IsWindow(window); }, "the end of a window");
}

void ModalDriver::WaitUntil(const std::function<bool()>& condition, const std::string& what)
{
    if (!Poll(condition, Clock::now() + deadline))
        throw std::runtime_error("waited in vain for " + what);
}

void ModalDriver::Click(HWND dialog, int control)
{
    ::SendMessageW(::GetDlgItem(dialog, control), BM_CLICK, 0, 0);
}

void ModalDriver::PostClick(HWND dialog, int control)
{
    ::PostMessageW(::GetDlgItem(dialog, control), BM_CLICK, 0, 0);
}

void ModalDriver::PressKey(HWND dialog, WORD key)
{
    const HWND focus = FocusOf(dialog);
    ::PostMessageW(focus, WM_KEYDOWN, key, 1);
    ::PostMessageW(focus, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

HWND ModalDriver::FocusOf(HWND dialog)
{
    const DWORD owner = ::GetWindowThreadProcessId(dialog, nullptr);
    HWND focus = nullptr;
    const auto hasFocus = [&]
    {
        focus = FocusedWindowOf(owner);
        return focus && ::IsChild(dialog, focus);
    };
    WaitUntil(hasFocus, "a control with the focus");
    return focus;
}

void ModalDriver::RunOnThreadOf(HWND window, const std::function<void()>& function)
{
    const DWORD owner = ::GetWindowThreadProcessId(window, nullptr);
    const HHOOK hook = ::SetWindowsHookExW(WH_CALLWNDPROC, &RunFunctionHook, nullptr, owner);
    ASSERT_NE(hook, nullptr);
    ::SendMessageW(window, RunFunctionMessage(), 0, reinterpret_cast<LPARAM>(&function));
    ::UnhookWindowsHookEx(hook);
}

std::vector<HWND> ShownDialogs()
{
    std::vector<HWND> dialogs;
    ::EnumWindows(&AddShownDialog, reinterpret_cast<LPARAM>(&dialogs));
    return dialogs;
}

void PostCancel(HWND dialog)
{
    const HWND no = ::GetDlgItem(dialog, IDNO);
    ::PostMessageW(dialog, WM_COMMAND, no ? IDNO : IDCANCEL, reinterpret_cast<LPARAM>(no));
}

std::wstring TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}
