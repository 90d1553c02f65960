#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

// How long a test waits for what a dialog or a run behind it is to do: long enough for a busy machine.
constexpr std::chrono::seconds dialogPatience{60};

// Uses modal dialogs as a person would, on a thread of its own, while the thread that runs them (the test's
// or a worker) is inside DoModal or MessageBox:
//
//     ModalDriver user([](ModalDriver& user) {
//         const HWND about = user.WaitForDialog(L"About");
//         user.Click(about, IDOK);
//     });
//     EXPECT_EQ(dialog.DoModal(), IDOK);
//     user.Join();
//
// Whatever is waited for and does not come within the deadline fails the test, ends the script and closes
// all dialogs of the process, so that DoModal returns. The script may use EXPECT_... of its own.
class ModalDriver
{
public:
    using Script = std::function<void(ModalDriver& user)>;

    explicit ModalDriver(Script script, std::chrono::milliseconds deadline = dialogPatience);
    ModalDriver(const ModalDriver&) = delete;
    ModalDriver& operator=(const ModalDriver&) = delete;
    ~ModalDriver();

    // Waits for the script's end; to be called on the test's thread, where the dialogs have ended.
    void Join();

    // For the script only.

    // The next dialog or message box of the process with that caption (and, if given, with that control) that
    // is shown and answers messages. Each is given once: a second call waits for another one.
    HWND WaitForDialog(const std::wstring& caption, int control = 0);
    // Waits until the window is gone.
    void WaitForEnd(HWND window);
    // Waits until `condition` holds; `what` says in the failure what was waited for.
    void WaitUntil(const std::function<bool()>& condition, const std::string& what);

    void Click(HWND dialog, int control);    // presses a button and returns when it has been handled
    // As Click, but returns at once: for buttons that open another dialog.
    void PostClick(HWND dialog, int control);
    // Types a key (VK_...) into the dialog's control that has the focus; returns at once. Waits until one has
    // it.
    void PressKey(HWND dialog, WORD key);
    HWND FocusOf(HWND dialog);    // waits until a control of the dialog has the focus

    // Runs `function` on the window's own thread and waits for it; the thread must be handling messages.
    static void RunOnThreadOf(HWND window, const std::function<void()>& function);

private:
    void RunScript() noexcept;

    Script script;
    std::chrono::milliseconds deadline;
    std::vector<HWND> given;
    std::thread thread;
};

// The dialogs and message boxes of this process that are shown, the topmost first.
std::vector<HWND> ShownDialogs();

// Asks a dialog to go; returns at once. A question is answered with No, as not every one can be cancelled.
void PostCancel(HWND dialog);

// A control's text, of any length.
std::wstring TextOf(HWND window);
