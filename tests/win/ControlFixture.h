#pragma once

#include "win/ActivationContext.h"

#include <windows.h>

#include <commctrl.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

struct WindowDestroyer
{
    void operator()(HWND window) const noexcept { ::DestroyWindow(window); }
};

// Owns a window of a test.
using OwnedWindow = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;

// A window that is never shown, and in it one control of common controls 6 to which a CWnd is attached.
template <typename Control>
class ControlFixture : public testing::Test
{
protected:
    ControlFixture(const wchar_t* windowClass, DWORD style)
    {
        frame.reset(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr,
                                      nullptr));
        window = ::CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 400, 300,
                                   frame.get(), nullptr, nullptr, nullptr);
        control.Attach(window);
    }

    void SetUp() override { ASSERT_NE(window, nullptr); }

    // The control's own answer, not by way of the class that is tested.
    LRESULT Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::SendMessageW(window, message, wParam, lParam);
    }
    template <typename Argument>
    LRESULT Ask(UINT message, WPARAM wParam, Argument* argument) const
    {
        return Ask(message, wParam, reinterpret_cast<LPARAM>(argument));
    }

    const ActivationContext commonControls;
    OwnedWindow frame;
    HWND window = nullptr;
    Control control;
};
