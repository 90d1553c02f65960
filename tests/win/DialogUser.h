#pragma once

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// Plays the user of the system's dialogs that the constructing thread shows, on a thread of its own. One at a
// time. Dialogs that its script leaves open are cancelled after a while and count as a failure of the test.
class DialogUser
{
public:
    using Script = std::function<void(DialogUser&)>;

    explicit DialogUser(Script script);
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;
    ~DialogUser();    // waits for the end of the script

    // For the script: the next dialog that was not there before; null, and a failure of the test, when none
    // comes in time.
    HWND NextDialog();
    // What the user sees of a kind (L"Edit", ...) in a dialog; null when there is none.
    static HWND Find(HWND dialog, const wchar_t* windowClass);
    static void Type(HWND dialog, const std::wstring& text);    // into the dialog's edit
    static void Press(HWND dialog, int button);
    static std::wstring TextOf(HWND window);

private:
    static LRESULT CALLBACK OnWindow(int code, WPARAM window, LPARAM details);
    static LRESULT CALLBACK OnMessage(int code, WPARAM removed, LPARAM message);
    void Run(const Script& script);
    void Notice(HWND dialog);
    void Forget(HWND window);    // its handle may name another one from here on

    static DialogUser* current;
    static constexpr std::chrono::seconds patience{20};

    std::mutex lock;    // guards what follows: the hooks write on the dialogs' thread
    std::condition_variable changed;
    std::vector<HWND> dialogs;    // in the order in which they came; null for those gone
    std::size_t taken = 0;
    bool over = false;

    HHOOK windowHook;
    HHOOK messageHook;
    std::thread thread;
};
