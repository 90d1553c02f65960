#pragma once

#include "win/KernelHandle.h"

#include <windows.h>

#include <string>
#include <vector>

// One row of the host's list of messages, as it is shown.
struct HostRow
{
    std::wstring sender;
    std::wstring subject;
    std::wstring marks;
    int image = -1;    // of its small pictures

    bool operator==(const HostRow&) const = default;
};

// Registers the add-in of that folder (a Windows path) for all users; throws WalkError.
void RegisterAddIn(const std::wstring& dist);

// The delivered stand-in host, running: its window as a person sees and works it. Every method throws
// WalkError.
class HostProgram
{
public:
    explicit HostProgram(const std::wstring& dist);    // starts it; a Windows path
    HostProgram(const HostProgram&) = delete;
    HostProgram& operator=(const HostProgram&) = delete;
    ~HostProgram();    // one that was not closed is ended

    HWND GetWindow() const noexcept { return window; }
    void PressToolBarButton(const std::wstring& caption) const;    // with the mouse; does not wait
    void WaitUntilIdle() const;    // no dialog stands on it, and it handles messages
    void Close();                  // and waits for the program to end with 0

    std::vector<std::wstring> ListFolders() const;    // their captions, from the top
    void SelectFolder(const std::wstring& name) const;
    std::vector<HostRow> ReadRows() const;    // of the selected folder

private:
    HWND Child(int id) const noexcept { return ::GetDlgItem(window, id); }

    KernelHandle process;
    HWND window = nullptr;
};
