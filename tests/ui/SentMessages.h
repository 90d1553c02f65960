#pragma once

#include <windows.h>

#include <functional>
#include <utility>

// Lets a test see each message that is sent to a window of its thread, before the window does.
class SentMessages
{
public:
    explicit SentMessages(std::function<void(const CWPSTRUCT& message)> see)
    {
        seer = std::move(see);
        hook = ::SetWindowsHookExW(WH_CALLWNDPROC, &SentMessages::Hook, nullptr, ::GetCurrentThreadId());
    }
    SentMessages(const SentMessages&) = delete;
    SentMessages& operator=(const SentMessages&) = delete;
    ~SentMessages()
    {
        ::UnhookWindowsHookEx(hook);
        seer = nullptr;
    }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam)
    {
        if (code == HC_ACTION)
            seer(*reinterpret_cast<const CWPSTRUCT*>(lParam));
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline std::function<void(const CWPSTRUCT&)> seer;    // of the test's thread only
    HHOOK hook = nullptr;
};
