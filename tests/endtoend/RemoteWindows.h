#pragma once

#include "win/KernelHandle.h"

#include <windows.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

// The windows of another process, as a person finds and works them: by messages, and with memory over there
// for those that the system does not carry from one process to the other.

// What was waited for in vain, or a program that cannot be started.
class WalkError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The topmost window that is shown and accepted; null when there is none.
HWND FindShownWindow(const std::function<bool(HWND)>& accepts);

// Both throw WalkError with `what` when nothing comes of it in two minutes.
void WaitUntil(const std::function<bool()>& condition, const std::string& what);
HWND WaitForWindow(const std::function<bool(HWND)>& accepts, const std::string& what);    // one that is shown

bool IsOfClass(HWND window, const wchar_t* name);
bool IsDialog(HWND window);
void WaitUntilGone(HWND window, const std::string& what);
void Press(HWND dialog, int button);    // returns before what it sets off is finished

// Starts a program and returns its process.
KernelHandle Start(std::wstring commandLine);
void WaitForExit(const KernelHandle& process, const std::string& what);    // throws unless it ends with 0

// The form of a path of the build machine that its Windows programs take.
std::wstring WindowsPath(const std::wstring& path);

// Memory of the process that a window belongs to, of the same bitness as this one.
class RemoteMemory
{
public:
    RemoteMemory(HWND window, std::size_t size);    // throws WalkError
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;
    ~RemoteMemory();

    LPARAM At(std::size_t offset = 0) const noexcept { return reinterpret_cast<LPARAM>(memory) + offset; }
    template <typename Value>
    void Write(const Value& value) const
    {
        Put(&value, sizeof value);
    }
    template <typename Value>
    Value Read() const
    {
        Value value{};
        Get(0, &value, sizeof value);
        return value;
    }
    std::wstring ReadText(std::size_t offset, std::size_t characters) const;    // up to its zero

private:
    void Put(const void* from, std::size_t size) const;
    void Get(std::size_t offset, void* to, std::size_t size) const;

    KernelHandle process;
    void* memory;
};
